pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// The photos of the library in rows of squares.
FocusScope {
    id: library

    required property Theme theme
    required property SheetModel sheet

    readonly property int spacing: 2
    readonly property real widest: 130

    signal taken(string photo)
    signal cancelled

    Item {
        id: top

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: cancel.implicitHeight

        TextButton {
            id: cancel

            anchors.left: parent.left
            text: qsTr("Cancel")
            theme: library.theme

            onActivated: library.cancelled()
        }

        Text {
            Accessible.ignored: !library.visible
            Accessible.name: text
            Accessible.role: Accessible.Heading
            anchors.centerIn: parent
            color: library.theme.text
            font: library.theme.font(17, true)
            text: qsTr("Photos")
        }
    }

    Text {
        Accessible.ignored: grid.count > 0 || !library.visible
        Accessible.name: text
        Accessible.role: Accessible.Paragraph
        anchors.centerIn: parent
        color: library.theme.secondaryText
        font: library.theme.font(17)
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("There are no photos on this phone.")
        visible: grid.count === 0
        width: parent.width - 48
        wrapMode: Text.Wrap
    }

    GridView {
        id: grid

        readonly property int columns: Math.max(2, Math.ceil(grid.width / library.widest))

        Accessible.ignored: !grid.visible
        Accessible.name: qsTr("Photos")
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: top.bottom
        cellHeight: grid.cellWidth
        cellWidth: grid.width / grid.columns
        clip: true
        focus: true
        model: library.sheet.photos

        delegate: PhotoTile {
            height: grid.cellHeight - library.spacing
            theme: library.theme
            width: grid.cellWidth - library.spacing

            onTaken: library.taken(modelData)
        }
    }
}
