import QtQuick
import Tandem.Settings

/// One choice of a sheet.
TextButton {
    id: choice

    required property SheetModel sheet
    required property int index
    required property string modelData
    property bool separated: true

    readonly property bool cancels: choice.sheet.isCancel(choice.index)

    bold: choice.cancels
    color: choice.sheet.isDestructive(choice.index) ? choice.theme.destructive : choice.theme.tint
    text: choice.modelData

    onActivated: choice.sheet.choose(choice.index)

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        color: choice.theme.separator
        height: 0.5
        visible: choice.separated
    }
}
