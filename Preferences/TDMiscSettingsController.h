#pragma once

#include "TDSettingsPage.h"

/// The Misc page: logging, and sending the log by e-mail. The base builds its rows from the page definition "Misc".
class TDMiscSettingsController : public TDSettingsPage {
    NS_CLASS(TDMiscSettingsController, TDSettingsPage)
public:
    // VXMiscSettingsViewController
    std::optional<std::string> specifiersFileName() override;
    std::string serviceName() override;
    std::string productName() override;
    std::shared_ptr<UIBarButtonItem> customBackButton() override;
    UIColor customNavigationBarColor() override;
    /// Sends the log while logging is on; else tells the user to turn it on first.
    void emailLogFile(const Value& sender) override;

    // PSListController
    Value readPreferenceValue(const Row& row) override;
    /// Writes through the root page and posts the row's notification itself, with or without a root page.
    void setPreferenceValue_specifier(const Value& value, const Row& row) override;
};
