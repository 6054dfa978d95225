#include "libvexil/VXMiscSettingsViewController.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "Phone/Phone.h"
#include "UIKit/UIAlertController.h"

#include <chrono>

NS_IMPLEMENTATION(VXMiscSettingsViewController, NS_METHOD(hasCustomNavigationBarColor),
    NS_METHOD(customNavigationBarColor), NS_METHOD(twitterMessage), NS_METHOD(twitterImage),
    NS_METHOD(copyRightSpecifier), NS_METHOD(copryRightSpecifierText), NS_METHOD(specifiersFileName),
    NS_METHOD(serviceName), NS_METHOD(productName), NS_METHOD(customBackButton), NS_METHOD(showError),
    NS_METHOD(emailLogFile), NS_METHOD(backButtonAction), NS_METHOD(shareAction))

namespace {

constexpr const char* supportAddress = "support@vexil.example";
constexpr const char* logDirectory = "/var/mobile/Library/Logs";
constexpr const char* noLogMessage = "There is no log yet. Use the phone with logging turned on and try again.";
constexpr const char* noMailMessage = "No mail program could be reached.";

std::string translated(const char* text)
{
    return NSBundle::mainBundle()->localizedStringForKey_value_table(text, "", "");
}

long currentYear()
{
    const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
    return static_cast<int>(std::chrono::year_month_day(today).year());
}

} // namespace

Row VXMiscSettingsViewController::vx__specifierByIdentifier_identifier(const Rows& rows, std::string_view identifier)
{
    const long index = vx__indexByIdentifier_identifier(rows, identifier);
    return index < 0 ? nullptr : rows[static_cast<std::size_t>(index)];
}

long VXMiscSettingsViewController::vx__indexByIdentifier_identifier(const Rows& rows, std::string_view identifier)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i]->hasIdentifier(identifier))
            return static_cast<long>(i);
    }
    return -1;
}

const Rows& VXMiscSettingsViewController::specifiers()
{
    if (!_specifiers) {
        const auto file = specifiersFileName();
        _specifiers = file ? loadSpecifiersFromPlistName_target(*file, self()) : Rows();
    }
    return *_specifiers;
}

void VXMiscSettingsViewController::viewDidLoad()
{
    Super::viewDidLoad();
    navigationItem().leftBarButtonItem = customBackButton();
    navigationItem().rightBarButtonItem = UIBarButtonItem::itemWithImage_style_target_action(
        nullptr, UIBarButtonItemStyle::Plain, self(), "shareAction:");
    navigationItem().rightBarButtonItem->setAccessibilityLabel(translated("Share"));
}

void VXMiscSettingsViewController::rowsWereBuilt()
{
    const Row footer = copyRightSpecifier();
    if (!footer)
        return;
    if (!_footerText)
        _footerText = copryRightSpecifierText(currentYear());
    footer->setProperty_forKey(*_footerText, PSProperty::footerText);
}

void VXMiscSettingsViewController::showError(const std::string& message)
{
    const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        productName(), message, UIAlertControllerStyle::Alert);
    alert->addAction({ translated("OK"), UIAlertActionStyle::Cancel, nullptr });
    presentViewController_animated_completion(alert, true, nullptr);
}

void VXMiscSettingsViewController::emailLogFile(const Value& /*sender*/)
{
    const std::string log = stringByAppendingPathComponent(logDirectory, serviceName() + ".log");
    if (!NSFileManager::defaultManager().fileExistsAtPath(log)) {
        showError(translated(noLogMessage));
        return;
    }
    const MailDraft draft { supportAddress, stringWithFormat(translated("%@ log"), { productName() }), "", { log } };
    const auto& mail = Phone::current().mail;
    if (!mail || !mail->compose(draft))
        showError(translated(noMailMessage));
}

void VXMiscSettingsViewController::backButtonAction(const Value& /*sender*/)
{
    if (const auto navigation = navigationController())
        navigation->popViewControllerAnimated(true);
}

void VXMiscSettingsViewController::shareAction(const Value& /*sender*/)
{
    presentViewController_animated_completion(
        UIActivityViewController::activityWithMessage_image(twitterMessage(), twitterImage()), true, nullptr);
}
