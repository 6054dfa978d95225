import QtQuick
import Tandem.Settings

/// A photo of the library.
FocusScope {
    id: tile

    required property Theme theme
    required property string modelData
    required property int index

    signal taken

    Accessible.focusable: true
    Accessible.ignored: !tile.visible
    Accessible.name: qsTr("Photo %1").arg(tile.index + 1)
    Accessible.role: Accessible.Button

    Accessible.onPressAction: tile.taken()
    Keys.onEnterPressed: tile.taken()
    Keys.onReturnPressed: tile.taken()
    Keys.onSpacePressed: tile.taken()

    // Seen while the photo is read, and in its place when it cannot be.
    Rectangle {
        anchors.fill: parent
        color: tile.theme.pressed
    }

    Image {
        anchors.fill: parent
        asynchronous: tile.theme.animated
        autoTransform: true
        fillMode: Image.PreserveAspectCrop
        source: "file://" + tile.modelData.split("/").map(encodeURIComponent).join("/")
        sourceSize.width: 320
    }

    TapHandler {
        onTapped: tile.taken()
    }

    FocusRing {
        radius: 0
        target: tile
        theme: tile.theme
    }
}
