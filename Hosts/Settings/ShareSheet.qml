import QtQuick
import Tandem.Settings

/// The share sheet: the message with its picture, and what can be done with them.
SheetBody {
    id: body

    readonly property int radius: 14
    readonly property int spacing: 8
    readonly property int padding: 16
    readonly property int highestPicture: 160

    Accessible.name: qsTr("Share")
    implicitHeight: column.implicitHeight
    told: outcome.visible ? outcome : null

    Column {
        id: column

        spacing: body.spacing
        width: parent.width

        SheetCard {
            radius: body.radius
            theme: body.theme
            width: parent.width

            Item {
                height: body.padding
                width: 1
            }

            PictureItem {
                Accessible.ignored: !visible
                Accessible.name: qsTr("Picture")
                Accessible.role: Accessible.Graphic
                anchors.horizontalCenter: parent?.horizontalCenter
                height: Math.min(implicitHeight, body.highestPicture)
                picture: body.sheet.picture
                visible: body.sheet.picture.present
                width: Math.min(implicitWidth, column.width - 2 * body.padding)
            }

            SheetText {
                message: body.sheet.message
                theme: body.theme
                title: ""
                width: column.width
            }
        }

        SheetCard {
            radius: body.radius
            theme: body.theme
            width: parent.width

            TextButton {
                focus: true
                text: qsTr("Copy")
                theme: body.theme
                width: column.width

                onActivated: body.sheet.copy()
            }

            TextButton {
                separated: true
                text: qsTr("Save Picture")
                theme: body.theme
                visible: body.sheet.picture.present
                width: column.width

                onActivated: body.sheet.save()
            }

            TextButton {
                separated: true
                text: qsTr("Mail")
                theme: body.theme
                width: column.width

                onActivated: body.sheet.mail()
            }

            Text {
                id: outcome

                Accessible.ignored: !visible
                Accessible.name: text
                Accessible.role: Accessible.AlertMessage
                bottomPadding: body.padding
                color: body.theme.secondaryText
                font: body.theme.font(13)
                horizontalAlignment: Text.AlignHCenter
                leftPadding: body.padding
                rightPadding: body.padding
                text: body.sheet.outcome
                visible: text !== ""
                width: column.width
                wrapMode: Text.Wrap
            }
        }

        SheetCard {
            radius: body.radius
            theme: body.theme
            width: parent.width

            TextButton {
                bold: true
                text: qsTr("Done")
                theme: body.theme
                width: column.width

                onActivated: body.sheet.cancel()
            }
        }
    }
}
