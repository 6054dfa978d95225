pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// An alert in the middle of the window, which waits until it has been read.
SheetBody {
    id: body

    centred: true
    implicitHeight: card.implicitHeight
    preferredWidth: 290

    Accessible.role: Accessible.AlertMessage

    SheetCard {
        id: card

        radius: 14
        theme: body.theme
        width: parent.width

        SheetText {
            message: body.sheet.message
            theme: body.theme
            title: body.sheet.title
            width: parent.width
        }

        Repeater {
            model: body.sheet.actions

            delegate: SheetChoice {
                focus: index === 0
                sheet: body.sheet
                theme: body.theme
                width: parent?.width ?? 0
            }
        }
    }
}
