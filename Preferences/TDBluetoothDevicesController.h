#pragma once

#include "TDSettingsPage.h"
#include "TDSubtitleCell.h"

/// The cell of every SIM row: the carrier's name above, a second line below.
class TDSIMInfoTableCell : public TDSubtitleCell {
    NS_CLASS(TDSIMInfoTableCell, TDSubtitleCell)
};

/// The Bluetooth page: a switch for each paired device, and under a device that is on one row for each SIM, of which
/// one carries the checkmark. The bindings live in the core library's settings; this page never touches the settings
/// file.
class TDBluetoothDevicesController : public TDSettingsPage {
    NS_CLASS(TDBluetoothDevicesController, TDSettingsPage)
public:
    /// Builds the rows anew at every call, from the devices and the SIMs as they are now. Lists of earlier calls stay
    /// as they are.
    Rows blueToothSpecifiers();
    void setBlueToothSpecifiers(Rows rows) { _blueToothSpecifiers = std::move(rows); }

    bool isBluetoothDeviceSelected(const std::optional<std::string>& address) const;
    /// The SIM of the user's default voice line; absent when no SIM is.
    std::optional<std::string> defaultSIMUUIDString() const;
    /// Named as the setter of the SIM rows; the choice is made when a row is tapped.
    void updateSimSelection_specifier(const Value& value, const Row& row);

    // PSListController
    const Rows& specifiers() override;
    Value readPreferenceValue(const Row& row) override;
    /// Turns the device's binding over. What is stored decides, not the value of the switch.
    void setPreferenceValue_specifier(const Value& value, const Row& row) override;
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    void tableView_didSelectRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    /// SIM rows alone.
    bool tableView_shouldHighlightRowAtIndexPath(UITableView& table, NSIndexPath path) override;

private:
    Rows _blueToothSpecifiers;
};
