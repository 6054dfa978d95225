#include "libvexil/VXMiscSettingsViewController.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "Phone/Phone.h"
#include "UIKit/UIAlertController.h"
#include "libvexil/VXLogMask.h"

#include <algorithm>
#include <chrono>
#include <utility>

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
constexpr const char* noCopyMessage = "The masked log could not be written.";
constexpr const char* maskedLogSuffix = ".masked";
constexpr const char* maskedMessage =
    "This log will be sent. Phone numbers, addresses and SIM keys are masked in it.\n\n%@";
constexpr const char* unmaskedMessage = "This log will be sent, with all phone numbers, addresses and SIM keys.\n\n%@";
constexpr const char* cutMessage = "(%@ earlier lines are sent too)\n%@";
/// A sheet shows the newest lines of a log that is longer.
constexpr std::size_t mostLinesShown = 200;

std::string translated(const char* text)
{
    return NSBundle::mainBundle()->localizedStringForKey_value_table(text, "", "");
}

/// The newest lines, after a word on how many there are before them.
std::string newestLines(const std::string& log)
{
    const std::size_t lines = static_cast<std::size_t>(std::ranges::count(log, '\n'));
    if (lines <= mostLinesShown)
        return log;
    std::size_t start = 0;
    for (std::size_t cut = lines - mostLinesShown; cut > 0; --cut)
        start = log.find('\n', start) + 1;
    return stringWithFormat(
        translated(cutMessage), { static_cast<std::int64_t>(lines - mostLinesShown), log.substr(start) });
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

void VXMiscSettingsViewController::viewDidAppear()
{
    Super::viewDidAppear();
    if (!std::exchange(_hasAppeared, true))
        rowsWereBuilt();
}

void VXMiscSettingsViewController::rowsWereBuilt()
{
    const Row footer = _hasAppeared ? copyRightSpecifier() : nullptr;
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
    const auto& mail = Phone::current().mail;
    if (mail && mail->asksUserFirst())
        reviewLogFile(log, Masking::On);
    else
        sendLogFile(log);
}

void VXMiscSettingsViewController::reviewLogFile(const std::string& log, Masking masking)
{
    const auto& files = Phone::current().files;
    const Bytes content = files ? files->read(log).value_or(Bytes()) : Bytes();
    const std::string whole(content.begin(), content.end());
    const bool isMasked = masking == Masking::On;
    const std::string text = isMasked ? maskedLog(whole) : whole;
    const auto sheet = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        stringWithFormat(translated("%@ log"), { productName() }),
        stringWithFormat(translated(isMasked ? maskedMessage : unmaskedMessage), { newestLines(text) }),
        UIAlertControllerStyle::ActionSheet);
    const std::weak_ptr<VXMiscSettingsViewController> weakPage = self();

    sheet->addAction({ translated("Send"), UIAlertActionStyle::Default, [weakPage, log, text, isMasked] {
                          if (const auto page = weakPage.lock())
                              isMasked ? page->sendMaskedLog(log, text) : page->sendLogFile(log);
                      } });
    sheet->addAction({ translated(isMasked ? "Show Unmasked" : "Mask"),
        isMasked ? UIAlertActionStyle::Destructive : UIAlertActionStyle::Default, [weakPage, log, isMasked] {
            if (const auto page = weakPage.lock())
                page->reviewLogFile(log, isMasked ? Masking::Off : Masking::On);
        } });
    sheet->addAction({ translated("Cancel"), UIAlertActionStyle::Cancel, nullptr });
    presentViewController_animated_completion(sheet, true, nullptr);
}

void VXMiscSettingsViewController::sendMaskedLog(const std::string& log, const std::string& text)
{
    const std::string copy = log + maskedLogSuffix;
    const auto& files = Phone::current().files;
    if (files && !files->replace(copy, Bytes(text.begin(), text.end())))
        sendLogFile(copy);
    else
        showError(translated(noCopyMessage));
}

void VXMiscSettingsViewController::sendLogFile(const std::string& file)
{
    MailDraft draft { supportAddress, stringWithFormat(translated("%@ log"), { productName() }), "", { file } };
    draft.onFailure = [weakPage = std::weak_ptr<VXMiscSettingsViewController>(self())] {
        if (const auto page = weakPage.lock())
            page->showError(translated(noMailMessage));
    };
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
