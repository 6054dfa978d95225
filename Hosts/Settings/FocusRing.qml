import QtQuick
import Tandem.Settings

/// Shows where the keyboard is.
Rectangle {
    id: ring

    required property Item target
    required property Theme theme
    property color ink: ring.theme.focus

    anchors.fill: parent
    border.color: ring.ink
    border.width: 3
    color: "transparent"
    radius: 8
    visible: ring.target.activeFocus && ring.theme.showsFocus
}
