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
    /// How high the sheet may be before it is scrolled as a whole.
    property real room: Infinity
    /// The part that has something new to say; null for none.
    property Item told: null

    function moveFocus(forward: bool) {
        const from = body.Window.activeFocusItem;
        const next = from === null ? null : from.nextItemInFocusChain(forward);
        if (next !== null)
            next.forceActiveFocus();
    }

    Accessible.name: body.sheet.title
    Accessible.role: Accessible.Dialog

    Keys.onDownPressed: body.moveFocus(true)
    Keys.onEscapePressed: body.sheet.cancel()
    Keys.onUpPressed: body.moveFocus(false)
}
