#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "Support/Substitutes.h"
#include "TDMiscSettingsController.h"
#include "TDPageStyle.h"
#include "libtandem/TDSettings.h"

namespace {

constexpr const char* loggingIsOff =
    "Please turn on 'Enable Logging' and try. Before sharing the log file, please ensure that the problem is "
    "reproducible on "
    "your device. This helps the Pairo to log the necessary information for identifying the problem.";
constexpr const char* noMail = "No mail program could be reached.";
constexpr const char* logPath = "/var/mobile/Library/Logs/com.vexil.tandem.log";

class MiscPage : public PageTest {
protected:
    MiscPage()
    {
        phone.writePage("Root", {});
        phone.writePage("Misc",
            Array { item("PSSwitchCell", "logging",
                        { { "key", "TandemLoggingEnabled" }, { "PostNotification", "changed" } }),
                item("PSButtonCell", "EmailLog", { { "action", "emailLogFile:" } }),
                item("PSGroupCell", "CopyRightHeader") });
        page = open<TDMiscSettingsController>();
    }

    static Bytes bytesOf(const std::string& text) { return { text.begin(), text.end() }; }
    std::shared_ptr<UIAlertController> sheet() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(page->presentedViewController());
    }

    /// The log is shown before it is sent.
    void tapEmailLogOf(const std::string& log)
    {
        phone.mail->leavesPhone = true;
        moveSwitch(*page, "logging", true);
        phone.writeFile(logPath, bytesOf(log));
        tap(*page, "EmailLog");
    }
    /// What the one draft attaches.
    std::string sentLog() const
    {
        const auto& drafts = phone.mail->drafts;
        const Bytes log = drafts.size() == 1 ? phone.readFile(drafts[0].attachments.at(0)).value_or(Bytes()) : Bytes();
        return { log.begin(), log.end() };
    }
    std::shared_ptr<UIAlertController> alertOnTop() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(navigation->topViewController()->topmostViewController());
    }

    std::shared_ptr<TDMiscSettingsController> page;
};

TEST_F(MiscPage, LoggingOffShowsTheMessageAndNothingElse)
{
    phone.writeFile(logPath, Bytes { 'x' });
    tap(*page, "EmailLog");
    EXPECT_EQ(screen->lines, Strings { std::string("error ") + loggingIsOff });
    EXPECT_TRUE(phone.mail->drafts.empty());
}

TEST_F(MiscPage, LoggingOnHandsTheLogToTheBase)
{
    phone.writeFile(logPath, Bytes { 'x' });
    moveSwitch(*page, "logging", true);
    EXPECT_EQ(phone.notifications->names, Strings { "changed" });
    tap(*page, "EmailLog");
    ASSERT_EQ(phone.mail->drafts.size(), 1U);
    const MailDraft& draft = phone.mail->drafts[0];
    EXPECT_EQ(draft.recipient, "support@vexil.example");
    EXPECT_EQ(draft.subject, "Pairo log");
    EXPECT_EQ(draft.attachments, Strings { logPath });
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(MiscPage, LogThatLeavesThePhoneIsShownAndMaskedFirst)
{
    phone.mail->leavesPhone = true;
    moveSwitch(*page, "logging", true);
    phone.writeFile(logPath, bytesOf("Called +49 151 1234567\n"));
    tap(*page, "EmailLog");
    EXPECT_TRUE(phone.mail->drafts.empty());
    EXPECT_EQ(sheet()->message(),
        "This log will be sent. Phone numbers, addresses and SIM keys are masked in it.\n\nCalled [number 1]\n");
    sheet()->chooseAction(0);
    ASSERT_EQ(phone.mail->drafts.size(), 1U);
    EXPECT_EQ(phone.mail->drafts[0].attachments, Strings { std::string(logPath) + ".masked" });
    EXPECT_EQ(phone.files->read(std::string(logPath) + ".masked"), bytesOf("Called [number 1]\n"));
}

TEST_F(MiscPage, LogIsSentUnmaskedWhenTheUserAsksForIt)
{
    phone.mail->leavesPhone = true;
    moveSwitch(*page, "logging", true);
    phone.writeFile(logPath, bytesOf("Called +49 151 1234567\n"));
    tap(*page, "EmailLog");
    sheet()->chooseAction(1);
    EXPECT_EQ(sheet()->message(),
        "This log will be sent, with all phone numbers, addresses and SIM keys.\n\nCalled +49 151 1234567\n");
    sheet()->chooseAction(0);
    ASSERT_EQ(phone.mail->drafts.size(), 1U);
    EXPECT_EQ(phone.mail->drafts[0].attachments, Strings { logPath });
}

TEST_F(MiscPage, LogIsSentAsItWasShown)
{
    tapEmailLogOf("Called +49 151 1234567\n");
    sheet()->chooseAction(1);
    phone.writeFile(logPath, bytesOf("Called +49 151 1234567\nUnseen\n"));
    sheet()->chooseAction(0);
    EXPECT_EQ(sentLog(), "Called +49 151 1234567\n");
    EXPECT_EQ(phone.mail->drafts.at(0).attachments, Strings { std::string(logPath) + ".shown" });
    EXPECT_EQ(phone.readFile(logPath), bytesOf("Called +49 151 1234567\nUnseen\n"));
}

TEST_F(MiscPage, LogThatHasGrownAndCannotBeCopied)
{
    tapEmailLogOf("line\n");
    sheet()->chooseAction(1);
    phone.writeFile(logPath, bytesOf("line\nUnseen\n"));
    phone.writeFile(std::string(logPath) + ".shown/x", {});
    sheet()->chooseAction(0);
    EXPECT_TRUE(phone.mail->drafts.empty());
    EXPECT_EQ(sheet()->message(), "The log could not be copied.");
}

TEST_F(MiscPage, DirectoryIsNoLog)
{
    phone.writeFile(std::string(logPath) + "/x", {});
    phone.storeSettings({ { "TandemLoggingEnabled", true } });
    TDSettings::sharedSettings()->reloadSettings();
    for (const bool leavesPhone : { false, true }) {
        phone.mail->leavesPhone = leavesPhone;
        tap(*page, "EmailLog");
        EXPECT_EQ(
            screen->lines.back(), "error There is no log yet. Use the phone with logging turned on and try again.");
        sheet()->chooseAction(0);
    }
    EXPECT_TRUE(phone.mail->drafts.empty());
}

TEST_F(MiscPage, LateFailureOfTheMail)
{
    tapEmailLogOf("line\n");
    sheet()->chooseAction(0);
    phone.mail->drafts.at(0).onFailure();
    EXPECT_EQ(sheet()->title(), "Pairo");
    EXPECT_EQ(sheet()->message(), noMail);
}

TEST_F(MiscPage, LateFailureOfTheMailWhileAnotherSheetIsUp)
{
    tapEmailLogOf("line\n");
    sheet()->chooseAction(0);
    tap(*page, "EmailLog");
    screen->lines.clear();
    phone.mail->drafts.at(0).onFailure();
    EXPECT_EQ(alertOnTop()->message(), noMail);
    alertOnTop()->chooseAction(0);
    EXPECT_EQ(screen->lines, (Strings { std::string("error ") + noMail, "dismiss", "sheet Pairo log" }));
    EXPECT_EQ(alertOnTop(), sheet());
    sheet()->chooseAction(2);
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST_F(MiscPage, SheetThatIsChosenFromUnderAnAlert)
{
    tapEmailLogOf("line\n");
    sheet()->chooseAction(0);
    tap(*page, "EmailLog");
    phone.mail->drafts.at(0).onFailure();
    screen->lines.clear();
    sheet()->chooseAction(2);
    EXPECT_EQ(page->presentedViewController(), nullptr);
    EXPECT_EQ(screen->lines, (Strings { "dismiss", "dismiss" }));
}

TEST_F(MiscPage, LateFailureOfTheMailAfterThePageIsLeft)
{
    tapEmailLogOf("line\n");
    sheet()->chooseAction(0);
    const auto failure = phone.mail->drafts.at(0).onFailure;
    navigation->popViewControllerAnimated(false);
    page = nullptr;
    failure();
    ASSERT_TRUE(alertOnTop());
    EXPECT_EQ(alertOnTop()->title(), "Pairo");
    EXPECT_EQ(alertOnTop()->message(), noMail);
    navigation.reset();
    failure();
}

TEST_F(MiscPage, LogThatTheUserCancelsIsNotSent)
{
    phone.mail->leavesPhone = true;
    moveSwitch(*page, "logging", true);
    phone.writeFile(logPath, bytesOf("x\n"));
    tap(*page, "EmailLog");
    sheet()->chooseAction(2);
    EXPECT_TRUE(phone.mail->drafts.empty());
    EXPECT_FALSE(phone.files->exists(std::string(logPath) + ".masked"));
}

TEST_F(MiscPage, NewestLinesOfALongLogAreShown)
{
    phone.mail->leavesPhone = true;
    std::string log;
    for (int i = 0; i < 203; ++i)
        log += "line " + std::to_string(i) + "\n";
    moveSwitch(*page, "logging", true);
    phone.writeFile(logPath, bytesOf(log));
    tap(*page, "EmailLog");
    const std::string shown = sheet()->message();
    EXPECT_NE(shown.find("(3 earlier lines are sent too)\nline 3\n"), std::string::npos) << shown;
    EXPECT_TRUE(shown.ends_with("line 202\n"));
    EXPECT_EQ(shown.find("line 2\n"), std::string::npos);
}

TEST_F(MiscPage, EndOfALineThatIsTooLongIsShown)
{
    // The cut would be inside of a character.
    const std::string end = std::string(19'998, 'b') + "\n";
    tapEmailLogOf("line\n" + std::string(40'000, 'a') + "ää" + end);
    EXPECT_TRUE(sheet()->message().ends_with("\n\n(40007 earlier characters are sent too)\n" + end))
        << sheet()->message().substr(0, 200);
    sheet()->chooseAction(0);
    EXPECT_EQ(sentLog(), "line\n" + std::string(40'000, 'a') + "ää" + end);
}

TEST_F(MiscPage, WholeLinesAreShownOfALogOfLongLines)
{
    const std::string line = std::string(9'000, 'x') + "\n";
    tapEmailLogOf(line + line + line);
    EXPECT_TRUE(sheet()->message().ends_with("\n\n(1 earlier lines are sent too)\n" + line + line));
}

TEST_F(MiscPage, LogsThatAreShownWhole)
{
    for (const std::string& log : { std::string(), std::string("\n"), std::string("line"), std::string("line\n\nline"),
             std::string(20'000, 'x'), std::string(200, '\n') }) {
        tapEmailLogOf(log);
        EXPECT_TRUE(sheet()->message().ends_with("masked in it.\n\n" + log)) << log.size();
        sheet()->chooseAction(2);
    }
}

TEST_F(MiscPage, BytesThatAreNoTextAreCutToo)
{
    tapEmailLogOf(std::string(50'000, '\x80'));
    EXPECT_LE(sheet()->message().size(), 20'200U);
}

TEST_F(MiscPage, LoggingIsAskedForAtEachTap)
{
    phone.writeFile(logPath, Bytes { 'x' });
    tap(*page, "EmailLog");
    page->dismissViewControllerAnimated_completion(false, nullptr);
    moveSwitch(*page, "logging", true);
    tap(*page, "EmailLog");
    moveSwitch(*page, "logging", false);
    tap(*page, "EmailLog");
    EXPECT_EQ(phone.mail->drafts.size(), 1U);
}

TEST_F(MiscPage, MessageAndProductNameAreTranslated)
{
    const std::string key =
        "Please turn on 'Enable Logging' and try. Before sharing the log file, please ensure that the problem is "
        "reproducible on your device. This helps the %@ to log the necessary information for identifying the "
        "problem.";
    phone.translate("de", { { key, "Protokoll für %@ einschalten, 100 %" }, { "Pairo", "Paaro" } });
    tap(*page, "EmailLog");
    EXPECT_EQ(screen->lines, Strings { "error Protokoll für Paaro einschalten, 100 %" });
    EXPECT_EQ(page->productName(), "Paaro");
}

TEST_F(MiscPage, TextsOfTheLogSheetAreTranslated)
{
    phone.translate("de",
        { { "Pairo", "Paaro" }, { "%@ log", "Protokoll von %@" }, { "Send", "Senden" }, { "Mask", "Maskieren" },
            { "Show Unmasked", "Unmaskiert zeigen" }, { "Cancel", "Abbrechen" }, { "OK", "Gut" },
            { "This log will be sent. Phone numbers, addresses and SIM keys are masked in it.\n\n%@", "Maskiert: %@" },
            { "This log will be sent, with all phone numbers, addresses and SIM keys.\n\n%@", "Unmaskiert: %@" },
            { noMail, "Kein Mailprogramm." } });
    const auto texts = [this] {
        Strings all { sheet()->title(), sheet()->message() };
        for (const UIAlertAction& action : sheet()->actions())
            all.push_back(action.title);
        return all;
    };
    tapEmailLogOf("line");
    EXPECT_EQ(
        texts(), (Strings { "Protokoll von Paaro", "Maskiert: line", "Senden", "Unmaskiert zeigen", "Abbrechen" }));
    sheet()->chooseAction(1);
    EXPECT_EQ(texts(), (Strings { "Protokoll von Paaro", "Unmaskiert: line", "Senden", "Maskieren", "Abbrechen" }));
    phone.mail->works = false;
    sheet()->chooseAction(0);
    EXPECT_EQ(texts(), (Strings { "Paaro", "Kein Mailprogramm.", "Gut" }));
}

TEST_F(MiscPage, BaseBuildsTheRowsFromTheFileThatThePageNames)
{
    EXPECT_EQ(page->specifiersFileName(), "Misc");
    EXPECT_EQ(identifiersOf(page->specifiers()), (Strings { "logging", "EmailLog", "CopyRightHeader" }));
    EXPECT_EQ(page->serviceName(), "com.vexil.tandem");
    EXPECT_EQ(page->productName(), "Pairo");
}

TEST_F(MiscPage, BarColourComesFromTheCoreLibrary)
{
    EXPECT_TRUE(page->hasCustomNavigationBarColor());
    EXPECT_EQ(page->customNavigationBarColor(), accentColor);
    const UIColor green { 0, 1, 0, 1 };
    const OtherBarColor other(TDMiscSettingsController::classObject(), green);
    EXPECT_EQ(page->customNavigationBarColor(), green);
}

TEST_F(MiscPage, BackButtonHasTheProductsImageAndGoesBack)
{
    phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "Tandem.png"), phone.png(30, 30));
    page = open<TDMiscSettingsController>();
    const auto button = page->navigationItem().leftBarButtonItem;
    ASSERT_TRUE(button);
    EXPECT_EQ(button->image()->size(), (CGSize { 30, 30 }));
    EXPECT_EQ(button->style(), UIBarButtonItemStyle::Plain);
    EXPECT_EQ(button->target(), page);
    EXPECT_EQ(button->action(), "backButtonAction:");
    button->performAction();
    EXPECT_EQ(screen->lines, Strings { "pop TDMiscSettingsController" });
}

} // namespace
