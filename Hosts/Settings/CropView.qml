import QtQuick
import Tandem.Settings

/// The chosen photo under a square: moved by dragging and by the arrow keys, enlarged by pinching, by the wheel and by
/// plus and minus.
FocusScope {
    id: view

    required property SettingsHost host
    required property SheetModel sheet
    required property Theme theme
    required property string photo
    /// How round the corners above are, into which the photo may not reach.
    required property real radius

    readonly property real keyStep: 12
    readonly property real keyZoom: 1.1
    readonly property real wheelZoom: 1.0015

    signal cancelled

    function zoomInMiddle(factor: real) {
        crop.zoomBy(factor, crop.width / 2, crop.height / 2);
    }

    Keys.onEscapePressed: view.cancelled()
    Keys.onPressed: event => {
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Left:
            return crop.moveBy(view.keyStep, 0);
        case Qt.Key_Right:
            return crop.moveBy(-view.keyStep, 0);
        case Qt.Key_Up:
            return crop.moveBy(0, view.keyStep);
        case Qt.Key_Down:
            return crop.moveBy(0, -view.keyStep);
        case Qt.Key_Plus:
        case Qt.Key_Equal:
            return view.zoomInMiddle(view.keyZoom);
        case Qt.Key_Minus:
            return view.zoomInMiddle(1 / view.keyZoom);
        default:
            event.accepted = false;
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        radius: view.radius
    }

    CropItem {
        id: crop

        Accessible.description: qsTr("Arrows move the photo, plus and minus enlarge it.")
        Accessible.ignored: !crop.visible
        Accessible.name: qsTr("Photo under a square")
        Accessible.role: Accessible.Graphic
        activeFocusOnTab: true
        anchors.bottom: buttons.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.topMargin: view.radius
        focus: true
        host: view.host
        photo: view.photo

        Keys.onEnterPressed: choose.activated()
        Keys.onReturnPressed: choose.activated()

        DragHandler {
            id: drag

            property point last

            target: null

            onActiveTranslationChanged: {
                if (!drag.active)
                    return;
                crop.moveBy(drag.activeTranslation.x - drag.last.x, drag.activeTranslation.y - drag.last.y);
                drag.last = Qt.point(drag.activeTranslation.x, drag.activeTranslation.y);
            }
            onActiveChanged: drag.last = Qt.point(0, 0)
        }

        PinchHandler {
            id: pinch

            property real last: 1

            target: null

            onActiveChanged: pinch.last = 1
            onActiveScaleChanged: {
                if (!pinch.active)
                    return;
                crop.zoomBy(pinch.activeScale / pinch.last, pinch.centroid.position.x, pinch.centroid.position.y);
                pinch.last = pinch.activeScale;
            }
        }

        WheelHandler {
            target: null

            onWheel: event => crop.zoomBy(Math.pow(view.wheelZoom, event.angleDelta.y), event.x, event.y)
        }

        FocusRing {
            target: crop
            theme: view.theme
        }
    }

    Text {
        Accessible.ignored: !visible
        Accessible.name: text
        Accessible.role: Accessible.Paragraph
        anchors.centerIn: crop
        color: "white"
        font: view.theme.font(17)
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("This picture cannot be shown.")
        visible: view.photo !== "" && !crop.usable
        width: parent.width - 48
        wrapMode: Text.Wrap
    }

    Item {
        id: buttons

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        height: Math.max(cancel.implicitHeight, choose.implicitHeight)

        TextButton {
            id: cancel

            anchors.left: parent.left
            color: "white"
            text: qsTr("Cancel")
            theme: view.theme

            onActivated: view.cancelled()
        }

        TextButton {
            id: choose

            anchors.right: parent.right
            bold: true
            color: "white"
            enabled: crop.usable
            text: qsTr("Choose")
            theme: view.theme

            onActivated: crop.pickInto(view.sheet)
        }
    }
}
