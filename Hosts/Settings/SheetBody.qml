import QtQuick
import Tandem.Settings

/// What all sheets have: what they show, and that Escape takes them down.
FocusScope {
    id: body

    required property SettingsHost host
    required property SheetModel sheet

    readonly property Theme theme: body.host.theme
    /// True for a sheet that takes all the height there is.
    property bool fills: false
    /// True for a box in the middle of the window at any width.
    property bool centred: false
    property real preferredWidth: 480

    Accessible.name: body.sheet.title
    Accessible.role: Accessible.Dialog

    Keys.onEscapePressed: body.sheet.cancel()
}
