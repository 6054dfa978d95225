pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// An alert in the middle of the window, which waits until it has been read.
SheetBody {
    id: body

    readonly property real usualWidth: 290
    readonly property real greatestWidth: 480

    centred: true
    implicitHeight: card.implicitHeight
    preferredWidth: Math.min(body.usualWidth * body.theme.textScale, body.greatestWidth)

    Accessible.role: Accessible.AlertMessage

    SheetCard {
        id: card

        radius: 14
        theme: body.theme
        width: parent.width

        SheetMessage {
            room: body.room - choices.height
            sheet: body.sheet
            theme: body.theme
            width: parent.width
        }

        Column {
            id: choices

            width: parent.width

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
}
