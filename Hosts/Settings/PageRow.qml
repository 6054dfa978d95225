import QtQuick
import Tandem.Settings

/// A row of a page, as screen readers know it.
PageRowItem {
    id: item

    required property int index

    readonly property bool isSwitch: item.kind === PageRowItem.Switch
    readonly property bool isChoice: item.kind === PageRowItem.Choice

    function roleOf(kind: int): int {
        switch (kind) {
        case PageRowItem.Switch:
            return Accessible.CheckBox;
        case PageRowItem.Slider:
            return Accessible.Slider;
        case PageRowItem.Choice:
            return Accessible.RadioButton;
        case PageRowItem.Button:
            return Accessible.Button;
        default:
            return Accessible.StaticText;
        }
    }

    Accessible.checkable: item.isSwitch || item.isChoice
    Accessible.checked: item.checked
    Accessible.description: item.detail
    Accessible.focusable: item.workable
    Accessible.ignored: item.name === ""
    Accessible.name: item.name
    Accessible.role: item.roleOf(item.kind)
    row: item.index

    Accessible.onDecreaseAction: item.decrease()
    Accessible.onIncreaseAction: item.increase()
    Accessible.onPressAction: item.activate()
    Accessible.onToggleAction: item.activate()
}
