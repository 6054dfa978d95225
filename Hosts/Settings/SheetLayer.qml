import QtQuick
import Tandem.Settings

/// What the page presents, above the darkened page: from the bottom on a phone, in the middle of a wide window.
FocusScope {
    id: layer

    required property SettingsHost host
    /// How far the sheet is up, from 0 to 1.
    property real raised: 0

    readonly property bool up: layer.host.sheet !== null
    readonly property SheetBody body: loader.item as SheetBody
    readonly property bool wide: layer.width >= 600 || (layer.body !== null && layer.body.centred)
    readonly property int margin: 8
    readonly property int duration: 280
    readonly property real shade: 0.4

    function fileOf(kind: int): string {
        switch (kind) {
        case SheetModel.Alert:
            return "AlertBox.qml";
        case SheetModel.Photos:
            return "PhotoSheet.qml";
        case SheetModel.Share:
            return "ShareSheet.qml";
        default:
            return "ActionSheet.qml";
        }
    }

    function follow() {
        if (layer.up) {
            loader.setSource(layer.fileOf(layer.host.sheet.kind), {
                    "host": layer.host,
                    "sheet": layer.host.sheet
                });
            layer.body.forceActiveFocus();
        }
        moving.stop();
        if (layer.host.theme.animated) {
            moving.to = layer.up ? 1 : 0;
            moving.start();
        } else {
            layer.raised = layer.up ? 1 : 0;
            layer.finish();
        }
    }

    function finish() {
        if (!layer.up)
            loader.setSource("");
    }

    focus: true
    visible: layer.up || layer.raised > 0

    Component.onCompleted: {
        if (layer.up)
            layer.follow();
    }

    Connections {
        function onSheetChanged() {
            layer.follow();
        }

        target: layer.host
    }

    NumberAnimation {
        id: moving

        duration: layer.duration
        easing.type: Easing.OutCubic
        property: "raised"
        target: layer

        onFinished: layer.finish()
    }

    Binding {
        property: "room"
        target: layer.body
        value: panel.room
        when: layer.body !== null
    }

    Rectangle {
        id: darkness

        anchors.fill: parent
        color: "black"
        opacity: layer.shade * layer.raised

        // Only what the sheet leaves free: a tap on the sheet is felt by what lies under it, too.
        containmentMask: QtObject {
            function contains(point: point): bool {
                return !panel.contains(darkness.mapToItem(panel, point));
            }
        }

        TapHandler {
            enabled: layer.up

            onTapped: {
                if (layer.host.sheet.kind !== SheetModel.Alert)
                    layer.host.sheet.cancel();
            }
        }
    }

    ScrollArea {
        id: panel

        readonly property real room: layer.height - 2 * layer.margin
        readonly property bool full: layer.body !== null && layer.body.fills

        anchors.horizontalCenter: parent.horizontalCenter
        contentHeight: loader.height
        told: layer.body?.told ?? null
        height: panel.full ? panel.room : Math.min(panel.room, loader.height)
        opacity: layer.wide ? layer.raised : 1
        width: Math.min(layer.width - 2 * layer.margin, layer.body === null ? 0 : layer.body.preferredWidth)
        y: layer.wide ? (layer.height - panel.height) / 2 : layer.height - (panel.height + layer.margin) * layer.raised

        Loader {
            id: loader

            enabled: layer.up
            focus: true
            height: panel.full ? panel.room : (layer.body === null ? 0 : layer.body.implicitHeight)
            width: panel.width
        }
    }
}
