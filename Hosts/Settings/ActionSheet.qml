pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// A question from the bottom of the window, its choices, and apart from them the way out.
SheetBody {
    id: body

    readonly property int spacing: 8
    readonly property int radius: 14

    implicitHeight: column.implicitHeight

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown;
        if (event.accepted)
            message.turnPage(event.key === Qt.Key_PageDown ? 1 : -1);
    }

    Column {
        id: column

        spacing: body.spacing
        width: parent.width

        SheetCard {
            radius: body.radius
            theme: body.theme
            width: parent.width

            SheetMessage {
                id: message

                room: body.room - choices.height - waysOut.height - body.spacing
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
                        sheet: body.sheet
                        theme: body.theme
                        visible: !cancels
                        width: parent?.width ?? 0
                    }
                }
            }
        }

        Column {
            id: waysOut

            width: parent.width

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
}
