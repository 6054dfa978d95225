#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDBluetoothDevicesController.h"
#include "TDPageStyle.h"
#include "TDSimSettingsController.h"

#include <fstream>

namespace {

constexpr const char* logoDirectory = "/var/mobile/Library/Preferences/Tandem";
constexpr const char* simA = "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4";
constexpr const char* simB = "B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89";

#if defined(__SANITIZE_ADDRESS__)
// The sanitizer keeps what was freed for a while, and sees leaks by itself.
constexpr int rebuilds = 0;
#else
constexpr int rebuilds = 100000;
#endif

class SimPage : public PageTest {
protected:
    SimPage() { phone.writePage("Root", {}); }

    void addTwoSims()
    {
        phone.subscriptions->addSim({ simA, "Home", "111", "Alpha", true });
        phone.subscriptions->addSim({ simB, "Work", "222", std::nullopt, false });
    }

    std::shared_ptr<TDSimSettingsController> openPage()
    {
        page = open<TDSimSettingsController>();
        phone.log->lines.clear();
        return page;
    }

    Strings rows() { return identifiersOf(page->specifiers()); }
    static std::string logoPath(const std::string& sim) { return std::string(logoDirectory) + "/" + sim + ".png"; }
    static std::string logoButton(const std::string& sim) { return "LOGO+" + sim; }
    void giveLogo(const std::string& sim, int size = 10) { phone.writeFile(logoPath(sim), phone.png(size, size)); }

    std::shared_ptr<UIAlertController> sheet()
    {
        return std::dynamic_pointer_cast<UIAlertController>(page->presentedViewController());
    }

    Strings actions()
    {
        Strings titles;
        for (const UIAlertAction& action : sheet()->actions())
            titles.push_back(action.title + " " + std::to_string(static_cast<int>(action.style)));
        return titles;
    }

    void choose(const std::string& title)
    {
        const auto up = sheet();
        for (std::size_t i = 0; i < up->actions().size(); ++i) {
            if (up->actions()[i].title == title) {
                up->chooseAction(i);
                return;
            }
        }
        FAIL() << title;
    }

    void pick(const std::shared_ptr<UIImage>& image)
    {
        const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(page->presentedViewController());
        ASSERT_TRUE(picker);
        picker->finishPickingImage(image);
    }

    static std::string removalFailure(const std::string& sim)
    {
        return "com.vexil.Pairo => Error: While removing item at path '" + logoPath(sim) + "' error => “" + sim
            + ".png” couldn’t be removed: No such file or directory.";
    }

    std::shared_ptr<TDSimSettingsController> page;
};

TEST_F(SimPage, NoSubscriptionsGiveNoRowsAtAll)
{
    page = open<TDSimSettingsController>();
    EXPECT_EQ(rows(), Strings {});
    EXPECT_EQ(phone.log->lines, Strings { "**************** subscriptions: (\n)" });
}

TEST_F(SimPage, TwoSimsWithoutLogosHaveTheirGroupsRowsButtonsAndNoReset)
{
    addTwoSims();
    page = open<TDSimSettingsController>();
    EXPECT_EQ(rows(),
        (Strings { "-", "SIM+" + std::string(simA), logoButton(simA), "-", "-", "SIM+" + std::string(simB),
            logoButton(simB), "-" }));
    const Rows& all = page->specifiers();
    EXPECT_EQ(all[0]->name(), "SIM 1");
    EXPECT_EQ(all[4]->name(), "SIM 2");
    EXPECT_EQ(all[1]->name(), "Home");
    EXPECT_EQ(all[1]->cellType(), PSCellType::Link);
    EXPECT_EQ(all[1]->propertyForKey("cellClass").classObject(), &TDSIMInfoTableCell::classObject());
    EXPECT_EQ(all[2]->name(), "Carrier Logo");
    EXPECT_EQ(all[2]->cellType(), PSCellType::Button);
    EXPECT_EQ(all[2]->buttonAction(), "changeCarrierLogo:");
    EXPECT_EQ(all[2]->propertyForKey("cellClass").classObject(), &TDSIMMaskTableCell::classObject());
    EXPECT_EQ(all[3]->name(), std::nullopt);
    EXPECT_EQ(phone.log->lines,
        Strings { "**************** subscriptions: (\n    <CTXPCServiceSubscriptionContext " + std::string(simA)
            + ", label Home>,\n    <CTXPCServiceSubscriptionContext " + simB + ", label Work>\n)" });
}

TEST_F(SimPage, ChoosingALogoShowsResetAllAtTheEnd)
{
    for (const char* sim : { simA, simB }) {
        phone.files->remove(logoDirectory);
        phone.subscriptions = std::make_shared<FakeSubscriptions>();
        Phone::current().subscriptions = phone.subscriptions;
        addTwoSims();
        openPage();
        tap(*page, logoButton(sim));
        choose("Change");
        EXPECT_EQ(page->currentSubScriptionContext(), sim);
        pick(UIImage::imageWithData(phone.png(7, 9)));
        EXPECT_EQ(screen->lines, (Strings { "sheet Pairo", "dismiss", "picker", "reload", "dismiss" }));
        EXPECT_EQ(page->specifiers().back()->identifier(), "LOGO");
        EXPECT_EQ(page->specifiers().back()->name(), "Reset All Logos");
        EXPECT_EQ(rows().size(), 9U);
        EXPECT_EQ(UIImage::imageWithContentsOfFile(logoPath(sim))->size(), (CGSize { 7, 9 }));
        EXPECT_EQ(page->currentSubScriptionContext(), sim);
    }
}

TEST_F(SimPage, UnknownCarrierShowsOnlyTheNumberAndAKnownOneNameAndNumber)
{
    addTwoSims();
    openPage();
    const auto known = cellOf(*page, "SIM+" + std::string(simA));
    EXPECT_EQ(known->detailTextLabel()->text(), "Alpha - <111>");
    EXPECT_EQ(known->imageView()->image()->size(), (CGSize { 40, 40 }));
    EXPECT_EQ(known->imageView()->layer().cornerRadius, 10);
    EXPECT_TRUE(known->imageView()->clipsToBounds());
    const auto unknown = cellOf(*page, "SIM+" + std::string(simB));
    EXPECT_EQ(unknown->detailTextLabel()->text(), "<222>");
    EXPECT_EQ(unknown->imageView()->image(), nullptr);
    EXPECT_FALSE(unknown->imageView()->clipsToBounds());
}

TEST_F(SimPage, SimRowShowsInformationOnly)
{
    addTwoSims();
    openPage();
    const auto cell = cellOf(*page, "SIM+" + std::string(simA));
    EXPECT_FALSE(cell->isUserInteractionEnabled());
    EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::None);
    EXPECT_EQ(cell->accessoryType(), UITableViewCellAccessoryType::None);
    EXPECT_EQ(cell->accessoryView(), nullptr);
    EXPECT_EQ(cell->textLabel()->textColor(), accentColor);
    EXPECT_EQ(cell->detailTextLabel()->textColor(), accentColor);
    const auto button = cellOf(*page, logoButton(simA));
    EXPECT_TRUE(button->isUserInteractionEnabled());
    EXPECT_EQ(button->selectionStyle(), UITableViewCellSelectionStyle::Default);
    EXPECT_EQ(button->imageView()->frame(), (CGRect { 0, 0, 40, 40 }));
    EXPECT_EQ(button->style(), UITableViewCellStyle::Subtitle);
}

TEST_F(SimPage, ImageContextOfASimRowIsLeftOpenUntilTheTurnEnds)
{
    addTwoSims();
    openPage();
    cellOf(*page, "SIM+" + std::string(simA));
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 1U);
    cellOf(*page, "SIM+" + std::string(simB));
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 0U);
}

TEST_F(SimPage, SheetOffersResetOnlyForASimWithALogoAndKeepsTheOrder)
{
    addTwoSims();
    giveLogo(simA);
    openPage();
    tap(*page, logoButton(simA));
    EXPECT_EQ(actions(), (Strings { "Change 2", "Reset 2", "Cancel 1" }));
    EXPECT_EQ(sheet()->message(),
        "Would you like to change the image of 'Home' carrier? It will appear in SIM selection window for both Calls & "
        "Messages.");
    choose("Cancel");
    tap(*page, logoButton(simB));
    EXPECT_EQ(actions(), (Strings { "Change 2", "Cancel 1" }));
}

TEST_F(SimPage, EmptyLabelFillsTheTemplateAndANullLabelHasATextOfItsOwn)
{
    phone.subscriptions->addSim({ simA, "", "111", "Alpha", true });
    phone.subscriptions->addSim({ simB, std::nullopt, "222", "Beta", true });
    openPage();
    tap(*page, logoButton(simA));
    EXPECT_EQ(sheet()->message(),
        "Would you like to change the image of '' carrier? It will appear in SIM selection window for both Calls & "
        "Messages.");
    choose("Cancel");
    tap(*page, logoButton(simB));
    EXPECT_EQ(sheet()->message(),
        "Would you like to change the image of this carrier? It will appear in SIM selection window for both Calls & "
        "Messages.");
}

TEST_F(SimPage, ResetRemovesTheLogoAndReloads)
{
    addTwoSims();
    giveLogo(simA);
    openPage();
    tap(*page, logoButton(simA));
    screen->lines.clear();
    choose("Reset");
    EXPECT_EQ(screen->lines, (Strings { "dismiss", "reload" }));
    EXPECT_FALSE(phone.files->exists(logoPath(simA)));
    EXPECT_EQ(rows().size(), 8U);
}

TEST_F(SimPage, ResetOfALogoThatIsGoneLogsAndDoesNotReload)
{
    addTwoSims();
    giveLogo(simA);
    openPage();
    tap(*page, logoButton(simA));
    phone.files->remove(logoPath(simA));
    screen->lines.clear();
    choose("Reset");
    EXPECT_EQ(screen->lines, Strings { "dismiss" });
    EXPECT_EQ(phone.log->lines, Strings { removalFailure(simA) });
}

TEST_F(SimPage, ResetAllTriesEverySimLogsTheMissingOnesAndReloadsOnce)
{
    addTwoSims();
    giveLogo(simB);
    openPage();
    tap(*page, "LOGO");
    EXPECT_EQ(sheet()->message(), "Are you sure you want to reset all carrier logos?");
    EXPECT_EQ(actions(), (Strings { "Reset All 2", "Cancel 1" }));
    screen->lines.clear();
    choose("Reset All");
    EXPECT_EQ(screen->lines, (Strings { "dismiss", "reload" }));
    EXPECT_EQ(phone.log->lines.front(), removalFailure(simA));
    EXPECT_EQ(phone.log->lines.size(), 2U);
    EXPECT_FALSE(phone.files->exists(logoPath(simB)));
}

TEST_F(SimPage, ResetAllAsksForTheSimsAgain)
{
    addTwoSims();
    giveLogo(simA);
    giveLogo(simB);
    openPage();
    tap(*page, "LOGO");
    phone.subscriptions->removeSim(simB);
    choose("Reset All");
    EXPECT_FALSE(phone.files->exists(logoPath(simA)));
    EXPECT_TRUE(phone.files->exists(logoPath(simB)));
}

TEST_F(SimPage, CancelForgetsTheSimAndAPickWithoutAnImageSavesNothing)
{
    addTwoSims();
    openPage();
    tap(*page, logoButton(simA));
    choose("Change");
    screen->lines.clear();
    pick(nullptr);
    EXPECT_EQ(screen->lines, Strings { "dismiss" });
    EXPECT_FALSE(phone.files->exists(logoDirectory));
    EXPECT_EQ(page->currentSubScriptionContext(), simA);
    tap(*page, logoButton(simA));
    choose("Cancel");
    EXPECT_EQ(page->currentSubScriptionContext(), std::nullopt);
}

TEST_F(SimPage, PickerThatIsCancelledIsTakenDownByThePlatform)
{
    addTwoSims();
    openPage();
    tap(*page, logoButton(simA));
    choose("Change");
    const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(page->presentedViewController());
    EXPECT_TRUE(picker->allowsEditing());
    EXPECT_EQ(picker->sourceType(), UIImagePickerControllerSourceType::PhotoLibrary);
    picker->cancel();
    EXPECT_EQ(page->presentedViewController(), nullptr);
    EXPECT_EQ(page->currentSubScriptionContext(), simA);
}

TEST_F(SimPage, PageDestroyedWhileItsSheetIsUpIsLeftAloneByTheActions)
{
    addTwoSims();
    giveLogo(simA);
    openPage();
    tap(*page, logoButton(simA));
    const auto orphan = sheet();
    const std::weak_ptr<TDSimSettingsController> gone = page;
    navigation->popViewControllerAnimated(false);
    page.reset();
    ASSERT_TRUE(gone.expired());
    for (const std::size_t change : { 0U, 2U })
        EXPECT_TRUE(orphan->chooseAction(change));
    EXPECT_TRUE(phone.files->exists(logoPath(simA)));
    // The SIM is held strongly: its logo goes though the page has gone.
    EXPECT_TRUE(orphan->chooseAction(1));
    EXPECT_FALSE(phone.files->exists(logoPath(simA)));
}

TEST_F(SimPage, FailedSaveShowsThePreviousLogoAndSaysNothingToTheUser)
{
    addTwoSims();
    phone.writeFile(logoDirectory, Bytes { 1 });
    openPage();
    tap(*page, logoButton(simA));
    choose("Change");
    screen->lines.clear();
    pick(UIImage::imageWithData(phone.png(7, 9)));
    EXPECT_EQ(screen->lines, (Strings { "reload", "dismiss" }));
    EXPECT_EQ(phone.readFile(logoDirectory), Bytes { 1 });
}

TEST_F(SimPage, HostileSimKeysTouchNothingOutsideTheLogoDirectory)
{
    const std::string outside = "/var/mobile/Library/Preferences/x.png";
    phone.writeFile(outside, Bytes { 1 });
    for (const std::string& key :
        Strings { "../x", "..", "/", "+", "", "a/b", "../../../../../x", std::string(10000, 'k') }) {
        SCOPED_TRACE(key.substr(0, 20));
        phone.subscriptions->addSim({ key, "Home", "111", "../../x", true });
        openPage();
        cellOf(*page, "SIM+" + key);
        page->setCurrentSubScriptionContext(key);
        page->imagePickerController_didFinishPickingMediaWithInfo(
            nullptr, { { UIImagePickerControllerEditedImage, UIImage::imageWithData(phone.png(2, 2)) } });
        page->resetCarrierLogos(nullptr);
        choose("Reset All");
        EXPECT_EQ(phone.readFile(outside), Bytes { 1 });
        phone.subscriptions->removeSim(key);
    }
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(phone.hostPath("/")))
        files += entry.is_regular_file();
    // The settings, the page definition of the root page, and the file outside.
    EXPECT_EQ(files, 3U);
}

TEST_F(SimPage, HundredThousandBuildsLeaveNothingBehind)
{
    addTwoSims();
    openPage();
    const auto residentPages = [] {
        std::ifstream statm("/proc/self/statm");
        std::size_t size = 0;
        std::size_t resident = 0;
        statm >> size >> resident;
        return resident;
    };
    const auto build = [&] {
        page->reloadSpecifiers();
        cellOf(*page, "SIM+" + std::string(simA));
        UIGraphicsDrainImageContexts();
        phone.log->lines.clear();
        screen->lines.clear();
    };
    for (int i = 0; i < 1000; ++i)
        build();
    const std::size_t before = residentPages();
    for (int i = 0; i < rebuilds; ++i)
        build();
    constexpr std::size_t pagesOfOneMebibyte = 256;
    EXPECT_LT(residentPages(), before + pagesOfOneMebibyte);
}

} // namespace
