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

    SheetLayer {
        id: sheets

        anchors.fill: parent
        focus: sheets.up
        host: main.host
    }

    Shortcut {
        sequence: "Alt+Left"

        onActivated: main.host.goBack()
    }
}
