import QtQuick
import Tandem.Settings

/// A button that is a text: a choice of a sheet, or a word in the corner of one.
FocusScope {
    id: button

    required property Theme theme
    required property string text
    property bool bold: false
    /// Whether a line parts the button from what is above it.
    property bool separated: false
    property color color: button.theme.tint

    readonly property int margin: 16
    readonly property int lowest: 50

    signal activated

    Accessible.focusable: true
    Accessible.ignored: !button.visible
    Accessible.name: button.text
    Accessible.role: Accessible.Button
    activeFocusOnTab: true
    implicitHeight: Math.max(button.lowest, label.implicitHeight + button.margin)
    implicitWidth: label.implicitWidth + 2 * button.margin

    Accessible.onPressAction: button.activated()
    Keys.onEnterPressed: button.activated()
    Keys.onReturnPressed: button.activated()
    Keys.onSpacePressed: button.activated()

    TapHandler {
        id: tap

        gesturePolicy: TapHandler.ReleaseWithinBounds

        onTapped: button.activated()
    }

    Rectangle {
        anchors.fill: parent
        color: button.theme.pressed
        opacity: tap.pressed ? 1 : 0
    }

    Text {
        id: label

        anchors.left: parent.left
        anchors.margins: button.margin
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: button.enabled ? button.color : button.theme.secondaryText
        font: button.theme.font(17, button.bold)
        horizontalAlignment: Text.AlignHCenter
        text: button.text
        wrapMode: Text.Wrap
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        color: button.theme.separator
        height: 0.5
        visible: button.separated
    }

    FocusRing {
        target: button
        theme: button.theme
    }
}
