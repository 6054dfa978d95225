#pragma once

#include "TDFeatureSettingsController.h"

/// The Calls page: the feature switch, the switch that offers the SIM choice, its selection time, and the rows of apps.
class TDCallsSettingsController : public TDFeatureSettingsController {
    NS_CLASS(TDCallsSettingsController, TDFeatureSettingsController)
public:
    /// Leaves the first and the last row while the feature is off, else goes on to the next rule. Raises the list's
    /// range error for a list of fewer than two rows.
    Rows& hideORShowCallsSpecifiers(Rows& rows);
    /// Takes the selection time away while the SIM choice is not offered.
    Rows& hideORShowDefaultActionCellSpecifiers(Rows& rows);
    /// The setter of the feature switch.
    void enableTandemForCalls_specifier(const Value& value, const Row& row);
    /// The setter of the switch that offers the SIM choice.
    void enableShowSimSelection_specifier(const Value& value, const Row& row);

    // PSListController
    const Rows& specifiers() override;
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override;

private:
    void insertFeatureRows();
    void removeFeatureRows();
};
