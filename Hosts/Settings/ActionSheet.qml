pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// A question from the bottom of the window, its choices, and apart from them the way out.
SheetBody {
    id: body

    readonly property int spacing: 8
    readonly property int radius: 14

    implicitHeight: column.implicitHeight

    Column {
        id: column

        spacing: body.spacing
        width: parent.width

        SheetCard {
            radius: body.radius
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
                    sheet: body.sheet
                    theme: body.theme
                    visible: !cancels
                    width: parent?.width ?? 0
                }
            }
        }

        Repeater {
            model: body.sheet.actions

            delegate: SheetCard {
                id: apart

                required property int index
                required property string modelData

                radius: body.radius
                theme: body.theme
                visible: body.sheet.isCancel(apart.index)
                width: column.width

                SheetChoice {
                    // The others of these are not to be seen.
                    focus: apart.visible
                    index: apart.index
                    modelData: apart.modelData
                    separated: false
                    sheet: body.sheet
                    theme: body.theme
                    width: parent?.width ?? 0
                }
            }
        }
    }
}
