pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// The photos of the library in rows of squares.
FocusScope {
    id: library

    required property Theme theme
    required property SheetModel sheet
    /// How round the corners below are, into which no photo may reach.
    required property real radius

    readonly property int margin: 16
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
            id: title

            Accessible.ignored: !library.visible
            Accessible.name: text
            Accessible.role: Accessible.Heading
            anchors.left: parent.left
            // In the middle, and where there is no room for that, beside the button.
            anchors.leftMargin: Math.max((top.width - title.width) / 2, cancel.width)
            anchors.verticalCenter: parent.verticalCenter
            color: library.theme.text
            font: library.theme.font(17, true)
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 9
            text: qsTr("Photos")
            width: Math.min(title.implicitWidth, top.width - cancel.width - library.margin)
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
        activeFocusOnTab: grid.count > 0
        anchors.bottom: parent.bottom
        anchors.bottomMargin: library.radius
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
