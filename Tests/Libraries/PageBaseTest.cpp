#include "Support/TestPhone.h"
#include "libvexil/VXMiscSettingsViewController.h"

#include <chrono>
#include <cstdlib>
#include <fstream>

namespace {

constexpr const char* logPath = "/var/mobile/Library/Logs/com.vexil.product.log";
constexpr const char* noLog = "There is no log yet. Use the phone with logging turned on and try again.";
constexpr const char* noMail = "No mail program could be reached.";

long currentYear()
{
    const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
    return static_cast<int>(std::chrono::year_month_day(today).year());
}

/// A package database of its own while it lives.
class PackageDatabase {
public:
    PackageDatabase()
    {
        change();
        setenv("DPKG_ADMINDIR", _folder.path().c_str(), 1);
    }
    ~PackageDatabase() { unsetenv("DPKG_ADMINDIR"); }
    PackageDatabase(const PackageDatabase&) = delete;
    PackageDatabase& operator=(const PackageDatabase&) = delete;

    /// As the package manager does it: a new file in the place of the old one.
    void change()
    {
        std::ofstream(_folder.path() / "status-new") << std::string(++_length, '\n');
        std::filesystem::rename(_folder.path() / "status-new", _folder.path() / "status");
    }
    void remove() { std::filesystem::remove(_folder.path() / "status"); }

private:
    TemporaryDirectory _folder;
    std::size_t _length = 0;
};

/// A page of the product, which answers every hook as the test wants.
class ProductPage final : public VXMiscSettingsViewController {
    NS_CLASS(ProductPage, VXMiscSettingsViewController)
public:
    std::optional<std::string> file = "Page";
    std::string service = "com.vexil.product";
    std::string product = "Product";
    std::shared_ptr<UIImage> image;
    std::shared_ptr<UIBarButtonItem> backButton;
    std::vector<long> yearsAsked;

    bool hasCustomNavigationBarColor() override { return true; }
    UIColor customNavigationBarColor() override { return { 0.25F, 0.5F, 0.75F, 1 }; }
    std::string twitterMessage() override { return "message"; }
    std::shared_ptr<UIImage> twitterImage() override { return image; }
    Row copyRightSpecifier() override { return vx__specifierByIdentifier_identifier(specifiers(), "CopyRightHeader"); }
    std::string copryRightSpecifierText(long year) override
    {
        yearsAsked.push_back(year);
        return "footer " + std::to_string(yearsAsked.size());
    }
    std::optional<std::string> specifiersFileName() override { return file; }
    std::string serviceName() override { return service; }
    std::string productName() override { return product; }
    std::shared_ptr<UIBarButtonItem> customBackButton() override { return backButton; }
};

/// A page that answers no more than it must.
class PlainPage final : public VXMiscSettingsViewController {
    NS_CLASS(PlainPage, VXMiscSettingsViewController)
public:
    bool hasCustomNavigationBarColor() override { return false; }
    UIColor customNavigationBarColor() override { return {}; }
    std::string twitterMessage() override { return {}; }
    std::shared_ptr<UIImage> twitterImage() override { return nullptr; }
    Row copyRightSpecifier() override { return nullptr; }
    std::string copryRightSpecifierText(long /*year*/) override
    {
        ADD_FAILURE() << "asked for the text of a footer that is not there";
        return {};
    }
};

NS_IMPLEMENTATION(ProductPage)
NS_IMPLEMENTATION(PlainPage)

class PageBase : public ::testing::Test {
protected:
    PageBase()
    {
        navigation->setObserver(screen);
        phone.writePage("Page", { item("PSLinkCell", "row"), item("PSGroupCell", "CopyRightHeader") });
    }
    template <class Page>
    void open(const std::shared_ptr<Page>& opened)
    {
        opened->initForContentSize({ 375, 667 });
        navigation->pushViewController_animated(opened, false);
        screen->lines.clear();
    }
    std::optional<std::string> footer() const { return page->footerOfGroup(page->specifiers().back()); }
    std::shared_ptr<UIAlertController> alert() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(page->presentedViewController());
    }

    PackageDatabase packages;
    TestPhone phone { ProductPage::classObject() };
    const std::shared_ptr<ScreenRecorder> screen = std::make_shared<ScreenRecorder>();
    const std::shared_ptr<UINavigationController> navigation = std::make_shared<UINavigationController>();
    const std::shared_ptr<ProductPage> page = std::make_shared<ProductPage>();
};

TEST_F(PageBase, BuildsItsRowsFromThePageDefinitionThatThePageNames)
{
    open(page);
    EXPECT_EQ(identifiersOf(page->specifiers()), (Strings { "row", "CopyRightHeader" }));
    EXPECT_EQ(page->specifiers()[0]->target(), page);
    EXPECT_EQ(page->title(), "Page");
}

TEST_F(PageBase, HasNoRowsWhereThePageNamesNoDefinitionOrAMissingOne)
{
    for (const std::optional<std::string>& file : { std::optional<std::string>(), { "Missing" }, { "" } }) {
        const auto empty = std::make_shared<ProductPage>();
        empty->file = file;
        open(empty);
        EXPECT_EQ(empty->specifiers(), Rows {});
        EXPECT_EQ(empty->yearsAsked, std::vector<long> {});
    }
}

TEST_F(PageBase, FindsTheFirstRowOfAnIdentifier)
{
    const Rows rows { PSSpecifier::emptyGroupSpecifier(), PSSpecifier::emptyGroupSpecifier(),
        PSSpecifier::emptyGroupSpecifier() };
    rows[1]->setIdentifier("twice");
    rows[2]->setIdentifier("twice");
    using Base = VXMiscSettingsViewController;
    EXPECT_EQ(Base::vx__indexByIdentifier_identifier(rows, "twice"), 1);
    EXPECT_EQ(Base::vx__specifierByIdentifier_identifier(rows, "twice"), rows[1]);
    for (const char* absent : { "", "Twice", "twic" }) {
        EXPECT_EQ(Base::vx__indexByIdentifier_identifier(rows, absent), -1) << absent;
        EXPECT_EQ(Base::vx__specifierByIdentifier_identifier(rows, absent), nullptr) << absent;
    }
    EXPECT_EQ(Base::vx__indexByIdentifier_identifier({}, "twice"), -1);
}

TEST_F(PageBase, ShowsTheFooterOfThisYear)
{
    const long before = currentYear();
    open(page);
    EXPECT_EQ(footer(), "footer 1");
    ASSERT_EQ(page->yearsAsked.size(), 1U);
    EXPECT_GE(page->yearsAsked[0], before);
    EXPECT_LE(page->yearsAsked[0], currentYear());
}

TEST_F(PageBase, AsksForNoFooterThatIsNotShown)
{
    open(page);
    page->reloadSpecifiers();
    EXPECT_EQ(page->footerOfGroup(page->specifiers().front()), std::nullopt);
    EXPECT_EQ(page->footerOfGroup(nullptr), std::nullopt);
    EXPECT_EQ(page->yearsAsked, std::vector<long> {});
}

TEST_F(PageBase, AsksForTheFooterOnceAndShowsItAfterEveryReload)
{
    open(page);
    for (int i = 0; i < 3; ++i) {
        page->reloadSpecifiers();
        EXPECT_EQ(footer(), "footer 1");
    }
    EXPECT_EQ(page->yearsAsked.size(), 1U);
}

TEST_F(PageBase, ShowsTheFooterThatAnotherPageOfTheProductHasAskedFor)
{
    open(page);
    footer();
    const auto other = std::make_shared<ProductPage>();
    open(other);
    EXPECT_EQ(other->footerOfGroup(other->specifiers().back()), "footer 1");
    EXPECT_EQ(other->yearsAsked, std::vector<long> {});
}

TEST_F(PageBase, AsksForTheFooterAgainWhenThePackagesHaveChanged)
{
    open(page);
    EXPECT_EQ(footer(), "footer 1");
    packages.change();
    EXPECT_EQ(footer(), "footer 2");
    EXPECT_EQ(footer(), "footer 2");
    packages.remove();
    EXPECT_EQ(footer(), "footer 3");
    EXPECT_EQ(footer(), "footer 3");
}

TEST_F(PageBase, ShowsTheFooterWhenThePageStandsOnTheScreen)
{
    screen->showsLater = true;
    open(page);
    EXPECT_EQ(footer(), std::nullopt);
    EXPECT_EQ(page->yearsAsked, std::vector<long> {});
    navigation->topPageIsShown();
    EXPECT_EQ(page->yearsAsked, std::vector<long> {});
    EXPECT_EQ(footer(), "footer 1");
}

TEST_F(PageBase, ShowsAFooterThatComesWithAReload)
{
    phone.writePage("Page", plainItems({ "row" }));
    open(page);
    EXPECT_EQ(footer(), std::nullopt);
    phone.writePage("Page", { item("PSGroupCell", "CopyRightHeader") });
    page->reloadSpecifiers();
    EXPECT_EQ(footer(), "footer 1");
}

TEST_F(PageBase, AnswersTheHooksBySelector)
{
    open(page);
    page->image = UIImage::imageWithData(phone.png(2, 2));
    EXPECT_EQ(page->performSelector("hasCustomNavigationBarColor"), Value(true));
    EXPECT_EQ(page->performSelector("customNavigationBarColor"), Value(Array { 0.25, 0.5, 0.75, 1.0 }));
    EXPECT_EQ(page->performSelector("twitterMessage"), Value("message"));
    EXPECT_EQ(page->performSelector("twitterImage"), Value(page->image));
    EXPECT_EQ(page->performSelector("copyRightSpecifier"), Value(page->specifiers().back()));
    EXPECT_EQ(page->performSelector("copryRightSpecifierText:", 1999), Value("footer 1"));
    EXPECT_EQ(page->yearsAsked.back(), 1999);
    EXPECT_EQ(page->performSelector("specifiersFileName"), Value("Page"));
    EXPECT_EQ(page->performSelector("serviceName"), Value("com.vexil.product"));
    EXPECT_EQ(page->performSelector("productName"), Value("Product"));
    EXPECT_EQ(page->performSelector("customBackButton"), Value());
}

TEST_F(PageBase, OffersThePagesMessageAndPictureToShare)
{
    page->image = UIImage::imageWithData(phone.png(2, 2));
    open(page);
    const auto button = page->navigationItem().rightBarButtonItem;
    ASSERT_TRUE(button);
    EXPECT_EQ(button->accessibilityLabel(), "Share");
    button->performAction();
    const auto sheet = std::dynamic_pointer_cast<UIActivityViewController>(page->presentedViewController());
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->message(), "message");
    EXPECT_EQ(sheet->image(), page->image);
    EXPECT_EQ(screen->lines, Strings { "present UIActivityViewController" });
}

TEST_F(PageBase, OffersToShareOnceAtATime)
{
    open(page);
    page->shareAction({});
    page->shareAction({});
    EXPECT_EQ(screen->lines, Strings { "present UIActivityViewController" });
}

TEST_F(PageBase, SpeaksTheUsersLanguage)
{
    phone.translate("de", { { "Share", "Teilen" }, { "OK", "Gut" }, { noLog, "Kein Protokoll." } });
    open(page);
    EXPECT_EQ(page->navigationItem().rightBarButtonItem->accessibilityLabel(), "Teilen");
    page->emailLogFile({});
    EXPECT_EQ(alert()->message(), "Kein Protokoll.");
    EXPECT_EQ(alert()->actions()[0].title, "Gut");
}

TEST_F(PageBase, ShowsAnErrorUntilTheUserHasReadIt)
{
    open(page);
    page->showError("Something is wrong.");
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->title(), "Product");
    EXPECT_EQ(alert()->message(), "Something is wrong.");
    EXPECT_EQ(alert()->preferredStyle(), UIAlertControllerStyle::Alert);
    ASSERT_EQ(alert()->actions().size(), 1U);
    EXPECT_EQ(alert()->actions()[0].title, "OK");
    alert()->chooseAction(0);
    EXPECT_EQ(screen->lines, (Strings { "error Something is wrong.", "dismiss" }));
}

TEST_F(PageBase, ShowsTheFirstOfTwoErrors)
{
    open(page);
    page->showError("first");
    page->performSelector("showError:", "second");
    EXPECT_EQ(screen->lines, Strings { "error first" });
}

TEST_F(PageBase, ShowsAnEmptyErrorForOneThatIsNoText)
{
    open(page);
    page->performSelector("showError:", 5);
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->message(), "");
}

TEST_F(PageBase, HasTheBarsOwnBackButtonUnlessThePageHasOne)
{
    open(page);
    EXPECT_EQ(page->navigationItem().leftBarButtonItem, nullptr);
    const auto other = std::make_shared<ProductPage>();
    other->backButton = UIBarButtonItem::itemWithImage_style_target_action(
        nullptr, UIBarButtonItemStyle::Plain, other, "backButtonAction:");
    open(other);
    EXPECT_EQ(other->navigationItem().leftBarButtonItem, other->backButton);
    other->backButton->performAction();
    EXPECT_EQ(screen->lines, Strings { "pop ProductPage" });
    EXPECT_EQ(navigation->topViewController(), page);
}

TEST_F(PageBase, GoesBackFromTheFirstPageToNowhere)
{
    open(page);
    page->backButtonAction({});
    EXPECT_EQ(navigation->topViewController(), page);
    const auto alone = std::make_shared<ProductPage>();
    alone->initForContentSize({ 375, 667 });
    alone->backButtonAction({});
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(PageBase, MailsTheLog)
{
    open(page);
    phone.writeFile(logPath, Bytes { 'x' });
    page->performSelector("emailLogFile:", page->specifiers()[0]);
    ASSERT_EQ(phone.mail->drafts.size(), 1U);
    const MailDraft& draft = phone.mail->drafts[0];
    EXPECT_EQ(draft.recipient, "support@vexil.example");
    EXPECT_EQ(draft.subject, "Product log");
    EXPECT_EQ(draft.body, "");
    EXPECT_EQ(draft.attachments, Strings { logPath });
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(PageBase, TellsTheUserWhereThereIsNoLog)
{
    open(page);
    phone.writeFile("/var/mobile/Library/Logs/com.vexil.other.log", Bytes { 'x' });
    page->emailLogFile({});
    EXPECT_EQ(screen->lines, Strings { std::string("error ") + noLog });
    EXPECT_TRUE(phone.mail->drafts.empty());
}

TEST_F(PageBase, TellsTheUserWhereNoMailProgramCanBeReached)
{
    open(page);
    phone.writeFile(logPath, Bytes { 'x' });
    phone.mail->works = false;
    page->emailLogFile({});
    EXPECT_EQ(screen->lines, Strings { std::string("error ") + noMail });
    EXPECT_EQ(phone.mail->drafts.size(), 1U);
    alert()->chooseAction(0);
    Phone::current().mail = nullptr;
    page->emailLogFile({});
    EXPECT_EQ(screen->lines.back(), std::string("error ") + noMail);
}

TEST_F(PageBase, PrintsAHostileTranslationOfTheSubjectAsItIs)
{
    phone.translate("de", { { "%@ log", "%@ %@ %ld %n%s %" } });
    open(page);
    phone.writeFile(logPath, Bytes { 'x' });
    page->product = "100%@";
    page->emailLogFile({});
    EXPECT_EQ(phone.mail->drafts.at(0).subject, "100%@ (null) (null) %n%s %");
}

TEST_F(PageBase, OfAPageThatAnswersNoMoreThanItMustHasNothingToShow)
{
    const auto plain = std::make_shared<PlainPage>();
    open(plain);
    EXPECT_EQ(plain->specifiers(), Rows {});
    EXPECT_EQ(plain->serviceName(), "");
    EXPECT_EQ(plain->productName(), "");
    EXPECT_EQ(plain->navigationItem().leftBarButtonItem, nullptr);
    plain->emailLogFile({});
    EXPECT_EQ(screen->lines, Strings { std::string("error ") + noLog });
    EXPECT_EQ(plain->presentedViewController()->title(), "");
}

TEST_F(PageBase, IsNotKeptByItsButtonsAndAlerts)
{
    auto closed = std::make_shared<ProductPage>();
    closed->initForContentSize({ 375, 667 });
    closed->loadViewIfNeeded();
    closed->showError("error");
    const auto button = closed->navigationItem().rightBarButtonItem;
    const auto shown = closed->presentedViewController();
    const std::weak_ptr<ProductPage> watched = closed;
    closed.reset();
    EXPECT_TRUE(watched.expired());
    button->performAction();
}

} // namespace
