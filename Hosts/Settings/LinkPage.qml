import QtQuick
import Tandem.Settings

/// A page of the web, which the user's browser shows.
ScrollArea {
    id: view

    required property PageModel page
    required property Theme theme

    readonly property int margin: 24

    contentHeight: Math.max(view.height, column.implicitHeight + 2 * view.margin)

    Column {
        id: column

        anchors.centerIn: parent
        spacing: 16
        width: Math.min(view.width - 2 * view.margin, 480)

        Text {
            Accessible.name: text
            Accessible.role: Accessible.Paragraph
            color: view.theme.text
            font: view.theme.font(17)
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("This page is shown in your browser.")
            width: parent.width
            wrapMode: Text.Wrap
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.Paragraph
            color: view.theme.secondaryText
            font: view.theme.font(13)
            horizontalAlignment: Text.AlignHCenter
            text: view.page.link
            width: parent.width
            wrapMode: Text.WrapAnywhere
        }

        TextButton {
            anchors.horizontalCenter: parent.horizontalCenter
            focus: true
            text: qsTr("Open Again")
            theme: view.theme
            width: Math.min(implicitWidth, parent.width)

            onActivated: view.page.openLink()
        }
    }
}
