import QtQuick
import Tandem.Settings

/// The title and the message of a sheet.
Column {
    id: texts

    required property Theme theme
    required property string title
    required property string message

    padding: 16
    spacing: 4

    Text {
        Accessible.ignored: !visible
        Accessible.name: texts.title
        Accessible.role: Accessible.Heading
        color: texts.theme.text
        font: texts.theme.font(15, true)
        horizontalAlignment: Text.AlignHCenter
        text: texts.title
        visible: texts.title !== ""
        width: texts.width - 2 * texts.padding
        wrapMode: Text.Wrap
    }

    Text {
        Accessible.ignored: !visible
        Accessible.name: texts.message
        Accessible.role: Accessible.Paragraph
        color: texts.theme.secondaryText
        font: texts.theme.font(13)
        horizontalAlignment: Text.AlignHCenter
        text: texts.message
        visible: texts.message !== ""
        width: texts.width - 2 * texts.padding
        wrapMode: Text.Wrap
    }
}
