#pragma once

#include "TDSettingsPage.h"

/// The page that Settings opens for the product: the master switch, the entries of the other pages, the maker's
/// products. It owns the settings, which the other pages reach through it, and is the only one that writes their file.
class TDRootListController : public TDSettingsPage {
    NS_CLASS(TDRootListController, TDSettingsPage)
public:
    // The store.
    /// Absent while the file cannot be read.
    const std::optional<Dictionary>& settings() const { return _settings; }
    void setSettings(std::optional<Dictionary> settings) { _settings = std::move(settings); }
    void loadSettings();
    /// Assigns the value, null to take the key away, and rewrites the whole file. Every row writes through this.
    void updateSettingsDict_forKey(const Value& value, const Value& key);
    /// Writes the settings over their file; a failure is logged and the file stays as it was.
    void writeSettings();

    /// Takes the rows that need the product enabled out of the list while it is disabled: all but the first two and the
    /// last four.
    Rows& hideOtherSpecifiers(Rows& rows);
    /// The setter of the master switch.
    void tandemEnabledOrDisabled_specifier(const Value& value, const Row& row);
    void tandemSettingsChanged(const Value& notification);
    /// Opens the maker's products page, where the application has one.
    void showVexilProducts(const Row& row);

    // PSListController
    bool initForContentSize(CGSize size) override;
    const Rows& specifiers() override;
    Value readPreferenceValue(const Row& row) override;
    void setPreferenceValue_specifier(const Value& value, const Row& row) override;
    void viewDidLoad() override;
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    void tableView_didSelectRowAtIndexPath(UITableView& table, NSIndexPath path) override;

private:
    void insertEnabledRows();
    void removeEnabledRows();

    std::optional<Dictionary> _settings;
};
