import QtQuick
import Tandem.Settings

/// What stands in the place of rows where a page has none.
Text {
    id: note

    required property Theme theme

    Accessible.ignored: !note.enabled || !note.visible
    Accessible.name: note.text
    Accessible.role: Accessible.Paragraph
    color: note.theme.secondaryText
    font: note.theme.font(17)
    horizontalAlignment: Text.AlignHCenter
    text: qsTr("There is nothing to set here yet.")
    wrapMode: Text.Wrap
}
