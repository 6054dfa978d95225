#include "libvexil/VXMiscSettingsViewController.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "Foundation/UserDirectories.h"
#include "Phone/Phone.h"
#include "UIKit/UIAlertController.h"
#include "libvexil/VXErrorAlert.h"
#include "libvexil/VXFooterText.h"
#include "libvexil/VXLogMask.h"
#include "libvexil/VXText.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string_view>
#include <utility>

NS_IMPLEMENTATION(VXMiscSettingsViewController, NS_METHOD(hasCustomNavigationBarColor),
    NS_METHOD(customNavigationBarColor), NS_METHOD(twitterMessage), NS_METHOD(twitterImage),
    NS_METHOD(copyRightSpecifier), NS_METHOD(copryRightSpecifierText), NS_METHOD(specifiersFileName),
    NS_METHOD(serviceName), NS_METHOD(productName), NS_METHOD(customBackButton), NS_METHOD(showError),
    NS_METHOD(emailLogFile), NS_METHOD(backButtonAction), NS_METHOD(shareAction),
    NS_METHOD(vx__specifierByIdentifier_identifier), NS_METHOD(vx__indexByIdentifier_identifier))

namespace {

constexpr const char* supportAddress = "support@vexil.example";
constexpr const char* noLogMessage = "There is no log yet. Use the phone with logging turned on and try again.";
constexpr const char* noMailMessage = "No mail program could be reached.";
constexpr const char* noCopyMessage = "The log could not be copied.";
constexpr const char* noMaskedCopyMessage = "The masked log could not be written.";
constexpr const char* maskedLogSuffix = ".masked";
/// Of a copy that is as the log was when the user saw it.
constexpr const char* shownLogSuffix = ".shown";
constexpr const char* maskedMessage =
    "This log will be sent. Phone numbers, addresses and SIM keys are masked in it.\n\n%@";
constexpr const char* unmaskedMessage = "This log will be sent, with all phone numbers, addresses and SIM keys.\n\n%@";
constexpr const char* cutMessage = "(%@ earlier lines are sent too)\n%@";
constexpr const char* cutLineMessage = "(%@ earlier characters are sent too)\n%@";
/// A sheet shows the newest lines of a log that is longer; of a last line that is longer than all of them may be, its
/// end.
constexpr std::size_t mostLinesShown = 200;
constexpr std::size_t mostBytesShown = 20'000;

/// Where the line begins that ends there; its end may be a line break.
std::size_t startOfLine(std::string_view log, std::size_t end)
{
    const std::size_t lineBreak = end < 2 ? std::string_view::npos : log.rfind('\n', end - 2);
    return lineBreak == std::string_view::npos ? 0 : lineBreak + 1;
}

/// Where the newest lines begin; at the end of the log when its last line is too long.
std::size_t startOfNewestLines(std::string_view log)
{
    std::size_t start = log.size();
    for (std::size_t lines = 0; lines < mostLinesShown; ++lines) {
        const std::size_t earlier = startOfLine(log, start);
        if (log.size() - earlier > mostBytesShown)
            break;
        start = earlier;
    }
    return start;
}

bool isInsideCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Where the newest characters begin of a log that is longer than they may be.
std::size_t startOfNewestCharacters(std::string_view log)
{
    std::size_t start = log.size() - mostBytesShown;
    while (start < log.size() && isInsideCharacter(log[start]))
        ++start;
    return start;
}

/// The newest part of the log, after a word on how much there is before it.
std::string newestPart(const std::string& log)
{
    if (const std::size_t start = startOfNewestLines(log); start < log.size() || log.empty()) {
        const std::string_view earlier(log.data(), start);
        return start == 0 ? log
                          : stringWithFormat(translated(cutMessage),
                              { std::int64_t { std::ranges::count(earlier, '\n') }, log.substr(start) });
    }
    const std::size_t start = startOfNewestCharacters(log);
    const auto insides = std::ranges::count_if(log.substr(0, start), isInsideCharacter);
    return stringWithFormat(
        translated(cutLineMessage), { static_cast<std::int64_t>(start) - insides, log.substr(start) });
}

std::optional<std::string> textOfFile(const std::string& path)
{
    const auto content = dataWithContentsOfFile(path);
    return content ? std::optional<std::string>(std::in_place, content->begin(), content->end()) : std::nullopt;
}

/// On the user's own clock, which may be set to another time zone while the program runs.
long currentYear()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts {};
    tzset();
    localtime_r(&now, &parts);
    return parts.tm_year + 1900L;
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
    _hasAppeared = true;
}

std::optional<std::string> VXMiscSettingsViewController::footerOfGroup(const Row& group)
{
    if (!_hasAppeared || !group || group != copyRightSpecifier())
        return Super::footerOfGroup(group);
    return sharedFooterText(NSBundle::bundleForClass(isa())->bundlePath(), currentYear(),
        [this](long year) { return copryRightSpecifierText(year); });
}

void VXMiscSettingsViewController::showError(const std::string& message)
{
    presentViewController_animated_completion(errorAlert(productName(), message), true, nullptr);
}

void VXMiscSettingsViewController::emailLogFile(const Value& /*sender*/)
{
    const std::string log = stringByAppendingPathComponent(logsDirectory(), serviceName() + ".log");
    const auto& mail = Phone::current().mail;
    if (!textOfFile(log))
        showError(translated(noLogMessage));
    else if (mail && mail->asksUserFirst())
        reviewLogFile(log, Masking::On);
    else
        sendLogFile(log);
}

void VXMiscSettingsViewController::reviewLogFile(const std::string& log, Masking masking)
{
    const std::string whole = textOfFile(log).value_or(std::string());
    const bool isMasked = masking == Masking::On;
    const std::string text = isMasked ? maskedLog(whole) : whole;
    const auto sheet = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        stringWithFormat(translated("%@ log"), { productName() }),
        stringWithFormat(translated(isMasked ? maskedMessage : unmaskedMessage), { newestPart(text) }),
        UIAlertControllerStyle::ActionSheet);
    const std::weak_ptr<VXMiscSettingsViewController> weakPage = self();

    sheet->addAction({ translated("Send"), UIAlertActionStyle::Default, [weakPage, log, text, masking] {
                          if (const auto page = weakPage.lock())
                              page->sendAsShown(log, text, masking);
                      } });
    sheet->addAction({ translated(isMasked ? "Show Unmasked" : "Mask"),
        isMasked ? UIAlertActionStyle::Destructive : UIAlertActionStyle::Default, [weakPage, log, isMasked] {
            if (const auto page = weakPage.lock())
                page->reviewLogFile(log, isMasked ? Masking::Off : Masking::On);
        } });
    sheet->addAction({ translated("Cancel"), UIAlertActionStyle::Cancel, nullptr });
    presentViewController_animated_completion(sheet, true, nullptr);
}

void VXMiscSettingsViewController::sendAsShown(const std::string& log, const std::string& shown, Masking masking)
{
    const bool isMasked = masking == Masking::On;
    const std::string copy = log + (isMasked ? maskedLogSuffix : shownLogSuffix);
    if (!isMasked && textOfFile(log) == shown)
        sendLogFile(log);
    else if (writeToFile(Bytes(shown.begin(), shown.end()), copy, Atomically::Yes))
        sendLogFile(copy);
    else
        showError(translated(isMasked ? noMaskedCopyMessage : noCopyMessage));
}

void VXMiscSettingsViewController::sendLogFile(const std::string& file)
{
    MailDraft draft { supportAddress, stringWithFormat(translated("%@ log"), { productName() }), "", { file } };
    draft.onFailure = showingErrorOnTop(navigationController(), productName(), translated(noMailMessage));
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
