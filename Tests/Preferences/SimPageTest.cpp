#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDBluetoothDevicesController.h"
#include "TDPageStyle.h"
#include "TDSimSettingsController.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <set>

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

using Pixel = std::array<std::uint8_t, 4>;
constexpr Pixel red { 255, 0, 0, 255 };
constexpr Pixel green { 0, 255, 0, 255 };
constexpr Pixel clear { 0, 0, 0, 0 };

/// The pixel of that column and row; negative ones count from the right and from below.
Pixel pixelAt(const UIImage& image, int column, int row)
{
    const auto bitmap = image.bitmap();
    const int x = column < 0 ? bitmap->width + column : column;
    const int y = row < 0 ? bitmap->height + row : row;
    Pixel pixel {};
    std::copy_n(&bitmap->rgba.at((static_cast<std::size_t>(y) * bitmap->width + x) * pixel.size()), pixel.size(),
        pixel.begin());
    return pixel;
}

/// Counts the changes of the switch that the page itself pays no attention to.
class PageWithASwitch final : public TDSimSettingsController {
    NS_CLASS(PageWithASwitch, TDSimSettingsController)
public:
    void switchChanged(const Value& /*sender*/) { ++switchChanges; }
    int switchChanges = 0;
};

NS_IMPLEMENTATION(PageWithASwitch, NS_METHOD(switchChanged))

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
    /// A logo of one row of pixels.
    void giveLogo(const std::string& sim, const std::vector<Pixel>& pixels)
    {
        Bitmap bitmap { static_cast<int>(pixels.size()), 1, {} };
        for (const Pixel& pixel : pixels)
            bitmap.rgba.insert(bitmap.rgba.end(), pixel.begin(), pixel.end());
        phone.writeFile(logoPath(sim), Phone::current().images->encodePng(bitmap).value_or(Bytes()));
    }
    /// The names of the logo files.
    std::set<std::string> logos() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(phone.hostPath(logoDirectory)))
            names.insert(entry.path().stem().string());
        return names;
    }
    /// Adds a row for the first SIM to the page, which builds none such by itself.
    void addRow(const std::string& identifier)
    {
        const Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Row", page, "", "", nullptr, PSCellType::Link, nullptr);
        row->setProperty_forKey(&TDSIMInfoTableCell::classObject(), PSProperty::cellClass);
        row->setProperty_forKey(false, PSProperty::enabled);
        row->setIdentifier(identifier);
        row->setUserInfo(page->specifiers().at(1)->userInfo());
        page->insertSpecifier_atIndex_animated(row, page->specifiers().size(), false);
    }

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

TEST_F(SimPage, SubscriptionsAreLoggedBeforeTheRowsAreBuilt)
{
    addTwoSims();
    phone.log->onWrite = [this](const std::string&) { giveLogo(simA); };
    openPage();
    EXPECT_EQ(page->specifiers().back()->identifier(), "LOGO");
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

TEST_F(SimPage, LogoIsStretchedToASquareAndItsClearPixelsStayClear)
{
    addTwoSims();
    giveLogo(simA, { red, green, green, clear });
    openPage();
    const auto image = cellOf(*page, "SIM+" + std::string(simA))->imageView()->image();
    EXPECT_EQ(image->size(), (CGSize { 40, 40 }));
    EXPECT_EQ(image->scale(), 2);
    for (const int row : { 0, -1 }) {
        EXPECT_EQ(pixelAt(*image, 0, row), red);
        EXPECT_EQ(pixelAt(*image, -1, row), clear);
    }
}

TEST_F(SimPage, LogoIsThatOfTheLastPieceOfTheIdentifier)
{
    phone.subscriptions->addSim({ "A+B+C", "Home", "111", "Alpha", true });
    giveLogo("A", { green });
    giveLogo("B+C", { green });
    giveLogo("C", { red });
    openPage();
    EXPECT_EQ(pixelAt(*cellOf(*page, "SIM+A+B+C")->imageView()->image(), 0, 0), red);
}

TEST_F(SimPage, SimOfAnUnknownCarrierKeepsTheImageOfItsRow)
{
    addTwoSims();
    giveLogo(simB);
    openPage();
    const auto icon = UIImage::imageWithData(phone.png(29, 29));
    rowOf(*page, "SIM+" + std::string(simB))->setProperty_forKey(icon, PSProperty::iconImage);
    EXPECT_EQ(cellOf(*page, "SIM+" + std::string(simB))->imageView()->image(), icon);
}

TEST_F(SimPage, RowOfAnIdentifierThatBeginsWithMaskHasASwitch)
{
    addTwoSims();
    const auto counting = open<PageWithASwitch>();
    page = counting;
    addRow("MASK+1");
    const auto cell = cellOf(*page, "MASK+1");
    EXPECT_TRUE(cell->isUserInteractionEnabled());
    EXPECT_EQ(cell->textLabel()->textColor(), accentColor);
    EXPECT_EQ(cell->detailTextLabel()->text(), "<111>");
    EXPECT_EQ(cell->detailTextLabel()->textColor(), UIColor::lightGrayColor());
    const auto toggle = std::dynamic_pointer_cast<UISwitch>(cell->accessoryView());
    ASSERT_TRUE(toggle);
    EXPECT_FALSE(toggle->isOn());
    toggle->sendActionsForControlEvents(UIControlEventValueChanged);
    EXPECT_EQ(counting->switchChanges, 1);
}

TEST_F(SimPage, PrefixesInLowerCaseMakeAButtonRow)
{
    addTwoSims();
    openPage();
    for (const char* identifier : { "sim+1", "mask+1", "Sim", "Mask", "" }) {
        addRow(identifier);
        const auto cell = cellOf(*page, identifier);
        EXPECT_TRUE(cell->isUserInteractionEnabled()) << identifier;
        EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::Default) << identifier;
        EXPECT_EQ(cell->detailTextLabel()->text(), std::nullopt) << identifier;
        EXPECT_EQ(cell->accessoryView(), nullptr) << identifier;
    }
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

TEST_F(SimPage, TextsAreTranslatedAllButCancel)
{
    phone.subscriptions->addSim({ simA, "Home", "111", "Alpha", true });
    phone.subscriptions->addSim({ simB, std::nullopt, "222", "Beta", true });
    giveLogo(simA);
    phone.translate("de",
        { { "Pairo", "Paaro" }, { "SIM %ld", "Karte %ld" }, { "Carrier Logo", "Logo" },
            { "Reset All Logos", "Alle Logos entfernen" }, { "Change", "Ändern" }, { "Reset", "Entfernen" },
            { "Reset All", "Alle entfernen" }, { "Cancel", "Abbrechen" },
            { "Would you like to change the image of '%@' carrier? It will appear in SIM selection window for both "
              "Calls & Messages.",
                "Bild von %@ ändern?" },
            { "Would you like to change the image of this carrier? It will appear in SIM selection window for both "
              "Calls & Messages.",
                "Bild ändern?" },
            { "Are you sure you want to reset all carrier logos?", "Alle Logos entfernen?" } });
    openPage();
    Strings names;
    for (const Row& row : page->specifiers())
        names.push_back(row->name().value_or("-"));
    EXPECT_EQ(names, (Strings { "Karte 1", "Home", "Logo", "-", "Karte 2", "-", "Logo", "-", "Alle Logos entfernen" }));
    const auto sheetOf = [&](const std::string& button) {
        tap(*page, button);
        Strings texts = actions();
        texts.insert(texts.begin(), { sheet()->title(), sheet()->message() });
        choose("Cancel");
        return texts;
    };
    EXPECT_EQ(sheetOf(logoButton(simA)),
        (Strings { "Paaro", "Bild von Home ändern?", "Ändern 2", "Entfernen 2", "Cancel 1" }));
    EXPECT_EQ(sheetOf(logoButton(simB)), (Strings { "Paaro", "Bild ändern?", "Ändern 2", "Cancel 1" }));
    EXPECT_EQ(sheetOf("LOGO"), (Strings { "Paaro", "Alle Logos entfernen?", "Alle entfernen 2", "Cancel 1" }));
}

TEST_F(SimPage, ResetsRemoveTheLogosOfTheirSimsAndNoOther)
{
    phone.subscriptions->addSim({ simA, "Home", "111", "Alpha", true });
    phone.subscriptions->addSim({ simB, "Work", "222", "Beta", true });
    for (const char* name : { simA, simB, "alpha", "beta", "GONE" })
        giveLogo(name);
    openPage();
    tap(*page, logoButton(simB));
    choose("Reset");
    EXPECT_EQ(logos(), (std::set<std::string> { simA, "alpha", "beta", "GONE" }));
    tap(*page, "LOGO");
    choose("Reset All");
    EXPECT_EQ(logos(), (std::set<std::string> { "alpha", "beta", "GONE" }));
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

TEST_F(SimPage, PageDestroyedWhileItsResetSheetIsUpLosesItsLogosAllTheSame)
{
    addTwoSims();
    giveLogo(simA);
    openPage();
    tap(*page, "LOGO");
    const auto orphan = sheet();
    const std::weak_ptr<TDSimSettingsController> gone = page;
    navigation->popViewControllerAnimated(false);
    page.reset();
    ASSERT_TRUE(gone.expired());
    EXPECT_TRUE(orphan->chooseAction(0));
    EXPECT_EQ(logos(), std::set<std::string> {});
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
