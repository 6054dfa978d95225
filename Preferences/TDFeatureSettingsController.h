#pragma once

#include "TDSettingsPage.h"

/// What the Calls and the Messages page have in common: values that go through the root page, app icons, a row that
/// comes and goes with the switch before it, and tall slider rows. Each page says for itself which rows it has and
/// when.
class TDFeatureSettingsController : public TDSettingsPage {
    NS_CLASS(TDFeatureSettingsController, TDSettingsPage)
public:
    // PSListController
    Value readPreferenceValue(const Row& row) override;
    /// Has the root page store the value, then the core library read its settings again.
    void setPreferenceValue_specifier(const Value& value, const Row& row) override;
    double tableView_estimatedHeightForRowAtIndexPath(UITableView& table, NSIndexPath path) override;

protected:
    /// Shows or hides, animated, the row that follows the switch of that identifier. A switch that is missing, or
    /// first, has none. Shown rows are fresh copies of the page definition.
    void showRowAfter(std::string_view identifier, const char* pageDefinition);
    void hideRowAfter(std::string_view identifier);
    /// The setter of such a switch: stores the value, moves the row that follows, reloads.
    void switchRowAfter(const Value& value, const Row& row, std::string_view identifier, const char* pageDefinition);
};
