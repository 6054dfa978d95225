import QtQuick
import Tandem.Settings

/// The whole window: the pages, and above them what they present.
FocusScope {
    id: main

    required property SettingsHost host

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: main.host.theme.mirrored
    focus: true

    Rectangle {
        anchors.fill: parent
        color: main.host.theme.page
    }

    PageStackView {
        anchors.fill: parent
        enabled: !sheets.up
        focus: !sheets.up
        host: main.host
    }

    Loader {
        id: sheets

        readonly property bool up: main.host.sheet !== null

        // Not before the first sheet is wanted.
        function load() {
            if (sheets.up && sheets.status === Loader.Null)
                sheets.setSource("SheetLayer.qml", {
                        "host": main.host
                    });
        }

        anchors.fill: parent
        focus: sheets.up

        Component.onCompleted: sheets.load()
        onUpChanged: sheets.load()
    }

    Shortcut {
        sequence: "Alt+Left"

        onActivated: main.host.goBack()
    }
}
