#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDMiscSettingsController.h"
#include "TDPageStyle.h"

namespace {

constexpr const char* loggingIsOff =
    "Please turn on 'Enable Logging' and try. Before sharing the log file, please ensure that the problem is "
    "reproducible on "
    "your device. This helps the Pairo to log the necessary information for identifying the problem.";
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
