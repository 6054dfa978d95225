import QtQuick
import Tandem.Settings

/// A button of the bar: a sign, and a picture or a text beside it.
FocusScope {
    id: button

    required property Theme theme
    required property string name
    required property color color
    required property int shape
    property phonePicture picture
    property string text: ""
    property real maximumWidth: button.width

    readonly property int margin: 10
    readonly property int spacing: 4
    readonly property int signSize: 22

    signal activated

    Accessible.focusable: true
    Accessible.ignored: !button.enabled || !button.visible
    Accessible.name: button.name
    Accessible.role: Accessible.Button
    activeFocusOnTab: true
    implicitHeight: 44
    implicitWidth: content.width + 2 * button.margin

    Accessible.onPressAction: button.activated()
    Keys.onEnterPressed: button.activated()
    Keys.onReturnPressed: button.activated()
    Keys.onSpacePressed: button.activated()

    TapHandler {
        id: tap

        onTapped: button.activated()
    }

    Row {
        id: content

        anchors.left: parent.left
        anchors.leftMargin: button.margin
        anchors.verticalCenter: parent.verticalCenter
        opacity: tap.pressed ? 0.5 : 1
        spacing: button.spacing

        Glyph {
            anchors.verticalCenter: parent.verticalCenter
            color: button.color
            height: button.signSize
            mirrored: button.theme.mirrored && button.shape === Glyph.Back
            shape: button.shape
            width: button.shape === Glyph.Back ? button.signSize * 0.7 : button.signSize
        }

        PictureItem {
            anchors.verticalCenter: parent.verticalCenter
            height: Math.min(implicitHeight, button.signSize)
            picture: button.picture
            tint: button.color
            visible: button.picture.present
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            color: button.color
            font: button.theme.font(17)
            text: button.text
            // A text that would be cut says less than the sign alone.
            visible: button.text !== "" && label.implicitWidth + button.signSize + 2 * button.margin <= button.maximumWidth
        }
    }

    // The bar has colours of its own, before which the usual one is not seen.
    FocusRing {
        ink: button.color
        target: button
        theme: button.theme
    }
}
