#pragma once

#include "TDFeatureSettingsController.h"

/// The Messages page: the feature switch, the switch of instant messages sent as texts with the row that belongs to it,
/// the switch that offers the SIM choice, its selection time, and the rows of apps.
class TDMessagesSettingsController : public TDFeatureSettingsController {
    NS_CLASS(TDMessagesSettingsController, TDFeatureSettingsController)
public:
    /// Leaves the first two rows and the last while the feature is off, else goes on to the next rule. Raises the
    /// list's range error for a list of one row.
    Rows& hideORShowMessagesSpecifiers(Rows& rows);
    /// Takes away the row that belongs to instant messages sent as texts while that is off, and the selection time
    /// while the SIM choice is not offered.
    Rows& hideORShowDefaultActionCellSpecifiers(Rows& rows);
    // The setters of the three switches.
    void tandemEnabledOrDisabledForMessages_specifier(const Value& value, const Row& row);
    void tandemEnabledOrDisabledForIMToText_specifier(const Value& value, const Row& row);
    void enableShowSimSelectionForMessages_specifier(const Value& value, const Row& row);

    // PSListController
    const Rows& specifiers() override;
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override;

private:
    void insertIMToTextRows();
    void removeIMToTextRows();
};
