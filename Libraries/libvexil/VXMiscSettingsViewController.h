#pragma once

#include "PreferencesUI/PSListController.h"

#include <optional>
#include <string>

/// The base of the product's pages: a list page with a share button, a footer that names the version, an error alert, a
/// back button of its own and a mail with the log. It asks the page for what it shows by the hooks below.
class VXMiscSettingsViewController : public PSListController {
    NS_CLASS(VXMiscSettingsViewController, PSListController)
public:
    // Hooks that every page answers.
    virtual bool hasCustomNavigationBarColor() = 0;
    virtual UIColor customNavigationBarColor() = 0;
    /// The text and the picture that the share button offers; no picture is null.
    virtual std::string twitterMessage() = 0;
    virtual std::shared_ptr<UIImage> twitterImage() = 0;
    /// The group that carries the footer; null for a page without one.
    virtual Row copyRightSpecifier() = 0;
    /// The footer's text in that year. Called when a footer is shown, once for all pages of the product, and again only
    /// when the machine's packages have changed.
    virtual std::string copryRightSpecifierText(long year) = 0;

    // Hooks that a page may answer.
    /// The page definition of a page that does not build `specifiers` itself.
    virtual std::optional<std::string> specifiersFileName() { return std::nullopt; }
    /// The product's identifier, which names its log file, and its name, which titles alerts and mails.
    virtual std::string serviceName() { return {}; }
    virtual std::string productName() { return {}; }
    /// The button in the place of the bar's own back button; null for the bar's own.
    virtual std::shared_ptr<UIBarButtonItem> customBackButton() { return nullptr; }

    /// The first row with that identifier, or null.
    static Row vx__specifierByIdentifier_identifier(const Rows& rows, std::string_view identifier);
    /// Its index, or -1.
    static long vx__indexByIdentifier_identifier(const Rows& rows, std::string_view identifier);

    /// Shows the message in an alert, until the user has read it.
    void showError(const std::string& message);
    /// Composes a mail with the log file; tells the user where there is no log, or no mail program. Where the mail
    /// leaves the phone, the user sees the log first, masked unless they ask otherwise, and sends it or not.
    virtual void emailLogFile(const Value& sender);
    /// Goes one page back.
    void backButtonAction(const Value& sender);
    /// Opens the share sheet with the page's message and picture.
    void shareAction(const Value& sender);

    // PSListController
    const Rows& specifiers() override;
    void viewDidLoad() override;
    void viewDidAppear() override;
    /// The product's footer below the group that carries it, as soon as the page stands on the screen.
    std::optional<std::string> footerOfGroup(const Row& group) override;

private:
    enum class Masking { On, Off };

    void reviewLogFile(const std::string& log, Masking masking);
    /// Sends the log when it is still what the user has seen, else a copy that is.
    void sendAsShown(const std::string& log, const std::string& shown, Masking masking);
    void sendLogFile(const std::string& file);

    /// The footer waits for this, because asking for the version starts a process.
    bool _hasAppeared = false;
};
