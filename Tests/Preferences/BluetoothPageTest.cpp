#include "Phone/BluetoothManager.h"
#include "Support/PageTest.h"
#include "Support/Substitutes.h"
#include "TDBluetoothDevicesController.h"
#include "TDPageStyle.h"
#include "TDSwitchCell.h"
#include "libtandem/TDSettings.h"

namespace {

constexpr const char* bindingsPath = "/var/mobile/Library/Preferences/com.vexil.tandem.bluetooth.plist";
constexpr const char* simA = "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4";
constexpr const char* simB = "B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89";
constexpr const char* footer =
    "When this device is connected to the above Bluetooth device, selected sim will be used while "
    "making outgoing call.";

class BluetoothPage : public PageTest {
protected:
    BluetoothPage() { phone.writePage("Root", {}); }

    void addTwoSims(bool firstIsVoice, bool secondIsVoice)
    {
        phone.subscriptions->addSim({ simA, "Home", "111", "Alpha", firstIsVoice });
        phone.subscriptions->addSim({ simB, "Work", "222", "Beta", secondIsVoice });
    }

    std::shared_ptr<TDBluetoothDevicesController> openPage() { return page = open<TDBluetoothDevicesController>(); }
    Strings rows() { return identifiersOf(page->specifiers()); }
    static std::string simRow(const std::string& address, const std::string& sim) { return address + "+" + sim; }

    /// Whether each SIM row under the device carries the checkmark.
    std::vector<bool> checkmarks(const std::string& address)
    {
        std::vector<bool> marks;
        for (const char* sim : { simA, simB }) {
            const auto accessory = cellOf(*page, simRow(address, sim))->accessoryType();
            EXPECT_TRUE(accessory == UITableViewCellAccessoryType::Checkmark
                || accessory == UITableViewCellAccessoryType::None);
            marks.push_back(accessory == UITableViewCellAccessoryType::Checkmark);
        }
        return marks;
    }

    const std::shared_ptr<TDSettings> settings = TDSettings::sharedSettings();
    std::shared_ptr<TDBluetoothDevicesController> page;
};

TEST_F(BluetoothPage, SwitchingOnADeviceWithoutASimBindsItToTheDefaultVoiceLine)
{
    addTwoSims(false, true);
    phone.devices->addDevice("Car", "AA");
    openPage();
    moveSwitch(*page, "AA", true);
    EXPECT_EQ(screen->lines, Strings { "reload" });
    EXPECT_EQ(settings->defaultSIMForBluetooth("AA"), simB);
    EXPECT_EQ(rows(), (Strings { "AA", "-", simRow("AA", simA), simRow("AA", simB), "-" }));
    EXPECT_EQ(checkmarks("AA"), (std::vector<bool> { false, true }));
}

TEST_F(BluetoothPage, FirstOfSeveralDefaultVoiceLinesIsTaken)
{
    addTwoSims(true, true);
    phone.devices->addDevice("Car", "AA");
    moveSwitch(*openPage(), "AA", true);
    EXPECT_EQ(settings->defaultSIMForBluetooth("AA"), simA);
}

TEST_F(BluetoothPage, SimsAreAskedForOnceABuild)
{
    addTwoSims(true, false);
    for (const char* address : { "AA", "BB", "CC" }) {
        phone.devices->addDevice("Device", address);
        settings->addToBluetoothDevices_defaultSIM(address, simA);
    }
    openPage();
    const int before = phone.subscriptions->timesAsked;
    page->reloadSpecifiers();
    EXPECT_EQ(phone.subscriptions->timesAsked, before + 1);
}

TEST_F(BluetoothPage, SwitchingOffAndOnAgainKeepsTheEarlierChoice)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    openPage();
    moveSwitch(*page, "AA", true);
    tap(*page, simRow("AA", simB));
    moveSwitch(*page, "AA", false);
    EXPECT_EQ(rows(), (Strings { "AA", "-" }));
    EXPECT_FALSE(settings->hasBluetoothDevice("AA"));
    moveSwitch(*page, "AA", true);
    EXPECT_EQ(checkmarks("AA"), (std::vector<bool> { false, true }));
}

TEST_F(BluetoothPage, TappingTheCheckmarkedSimChangesNothingAndWritesNothing)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    settings->addToBluetoothDevices_defaultSIM("AA", simA);
    openPage();
    const auto before = std::filesystem::last_write_time(phone.hostPath(bindingsPath));
    const Bytes content = *phone.readFile(bindingsPath);
    tap(*page, simRow("AA", simA));
    EXPECT_EQ(screen->lines, Strings {});
    EXPECT_EQ(phone.readFile(bindingsPath), content);
    EXPECT_EQ(std::filesystem::last_write_time(phone.hostPath(bindingsPath)), before);
    EXPECT_EQ(page->table().indexPathForSelectedRow(), std::nullopt);
}

TEST_F(BluetoothPage, TappingAnotherSimBindsItAndReloadsItsSectionOnly)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    phone.devices->addDevice("Speaker", "BB");
    settings->addToBluetoothDevices_defaultSIM("AA", simA);
    settings->addToBluetoothDevices_defaultSIM("BB", simA);
    openPage();
    EXPECT_EQ(checkmarks("AA"), (std::vector<bool> { true, false }));
    const auto other = cellOf(*page, simRow("BB", simA));
    tap(*page, simRow("AA", simB));
    EXPECT_EQ(screen->lines, Strings { "reloadSection 1 animation 5" });
    EXPECT_EQ(checkmarks("AA"), (std::vector<bool> { false, true }));
    EXPECT_EQ(cellOf(*page, simRow("BB", simA)), other);
    EXPECT_EQ(checkmarks("BB"), (std::vector<bool> { true, false }));
}

TEST_F(BluetoothPage, TappedSimIsCheckmarkedAtOnceAndReloadedWithinUpdates)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    settings->addToBluetoothDevices_defaultSIM("AA", simA);
    openPage();
    const auto tapped = cellOf(*page, simRow("AA", simB));
    const long endedBefore = endedTableUpdates();
    page->table().beginUpdates();
    tap(*page, simRow("AA", simB));
    EXPECT_EQ(tapped->accessoryType(), UITableViewCellAccessoryType::Checkmark);
    EXPECT_EQ(endedTableUpdates(), endedBefore + 1);
    EXPECT_EQ(screen->lines, Strings {});
    page->table().endUpdates();
    EXPECT_EQ(screen->lines, Strings { "reloadSection 1 animation 5" });
}

TEST_F(BluetoothPage, TapOnADeviceRowGoesToTheBase)
{
    phone.devices->addDevice("Car", "AA");
    openPage();
    tap(*page, "AA");
    EXPECT_EQ(page->table().indexPathForSelectedRow(), std::nullopt);
    rowOf(*page, "AA")->setButtonAction("backButtonAction:");
    tap(*page, "AA");
    EXPECT_EQ(screen->lines, Strings { "pop TDBluetoothDevicesController" });
}

TEST_F(BluetoothPage, CellsThatTheBaseMakesOtherwise)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    settings->addToBluetoothDevices_defaultSIM("AA", simA);
    openPage();
    rowOf(*page, "AA")->setProperty_forKey(&PSTableCell::classObject(), PSProperty::cellClass);
    const Row sim = rowOf(*page, simRow("AA", simA));
    sim->setProperty_forKey(&TDSwitchCell::classObject(), PSProperty::cellClass);
    sim->setProperty_forKey(false, PSProperty::enabled);
    EXPECT_EQ(cellOf(*page, "AA")->selectionStyle(), UITableViewCellSelectionStyle::None);
    const auto cell = cellOf(*page, simRow("AA", simA));
    EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::Default);
    EXPECT_TRUE(cell->isUserInteractionEnabled());
}

/// Bound SIM known, unknown, null, against default voice line or not.
TEST_F(BluetoothPage, CheckmarkFollowsTheBindingAndOnlyWithoutOneTheDefaultVoiceLine)
{
    struct Case {
        std::optional<std::string> bound;
        bool firstIsVoice;
        std::vector<bool> marks;
    };
    const std::vector<Case> cases {
        { simA, true, { true, false } },
        { simA, false, { true, false } },
        { simB, true, { false, true } },
        { "GONE", true, { false, false } },
        { "GONE", false, { false, false } },
        { std::nullopt, true, { true, false } },
        { std::nullopt, false, { false, false } },
    };
    phone.devices->addDevice("Car", "AA");
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.bound.value_or("null") << c.firstIsVoice);
        phone.subscriptions->removeSim(simA);
        phone.subscriptions->removeSim(simB);
        addTwoSims(c.firstIsVoice, false);
        settings->addToBluetoothDevices_defaultSIM("AA", c.bound);
        openPage();
        EXPECT_EQ(checkmarks("AA"), c.marks);
    }
}

TEST_F(BluetoothPage, DeviceBoundToNoSimBindsAnySimThatIsTapped)
{
    addTwoSims(false, false);
    phone.devices->addDevice("Car", "AA");
    openPage();
    moveSwitch(*page, "AA", true);
    EXPECT_TRUE(settings->hasBluetoothDevice("AA"));
    EXPECT_EQ(settings->defaultSIMForBluetooth("AA"), std::nullopt);
    tap(*page, simRow("AA", simA));
    EXPECT_EQ(settings->defaultSIMForBluetooth("AA"), simA);
}

TEST_F(BluetoothPage, SwitchShowsTheBindingWhateverValueItSends)
{
    phone.devices->addDevice("Car", "AA");
    openPage();
    for (const bool sent : { false, false, true, true }) {
        const bool before = settings->hasBluetoothDevice("AA");
        moveSwitch(*page, "AA", sent);
        EXPECT_EQ(settings->hasBluetoothDevice("AA"), !before);
        const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(cellOf(*page, "AA"));
        EXPECT_EQ(std::dynamic_pointer_cast<UISwitch>(cell->control())->isOn(), !before);
    }
}

TEST_F(BluetoothPage, OnlySimRowsHighlight)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    settings->addToBluetoothDevices_defaultSIM("AA", simA);
    openPage();
    UITableView& table = page->table();
    EXPECT_FALSE(page->tableView_shouldHighlightRowAtIndexPath(table, { 0, 0 }));
    EXPECT_TRUE(page->tableView_shouldHighlightRowAtIndexPath(table, { 1, 0 }));
    EXPECT_TRUE(page->tableView_shouldHighlightRowAtIndexPath(table, { 1, 1 }));
}

TEST_F(BluetoothPage, ThreeDevicesTheMiddleOneBound)
{
    addTwoSims(true, false);
    phone.devices->addDevice("One", "AA");
    phone.devices->addDevice("Two", "BB");
    phone.devices->addDevice("Three", "CC");
    settings->addToBluetoothDevices_defaultSIM("BB", simA);
    openPage();
    EXPECT_EQ(rows(), (Strings { "AA", "-", "BB", "-", simRow("BB", simA), simRow("BB", simB), "-", "CC", "-" }));
    const Rows& all = page->specifiers();
    EXPECT_EQ(all[3]->name(), "Default SIM");
    EXPECT_EQ(all[3]->propertyForKey("footerText"), Value(footer));
    EXPECT_EQ(all[0]->cellType(), PSCellType::Switch);
    EXPECT_EQ(all[0]->propertyForKey("cellClass").classObject(), &TDSwitchCell::classObject());
    EXPECT_EQ(std::dynamic_pointer_cast<BluetoothDevice>(all[0]->userInfo())->address(), "AA");
    EXPECT_EQ(all[4]->cellType(), PSCellType::Link);
    EXPECT_EQ(all[4]->name(), "Alpha");
    EXPECT_EQ(all[4]->setter(), "updateSimSelection:specifier:");
    EXPECT_EQ(all[1]->name(), std::nullopt);
}

TEST_F(BluetoothPage, TextsAreTranslatedInTheApplicationsOwnBundle)
{
    phone.translate("de", { { "Default SIM", "Standard-SIM" }, { footer, "Fußzeile" } });
    phone.devices->addDevice("Car", "AA");
    settings->addToBluetoothDevices_defaultSIM("AA", std::nullopt);
    openPage();
    EXPECT_EQ(page->specifiers()[1]->name(), "Standard-SIM");
    EXPECT_EQ(page->specifiers()[1]->propertyForKey("footerText"), Value("Fußzeile"));
}

TEST_F(BluetoothPage, NoDevicesNoServiceAndNoSimsShowLess)
{
    openPage();
    EXPECT_EQ(rows(), Strings {});
    phone.devices->addDevice("Car", "AA");
    settings->addToBluetoothDevices_defaultSIM("AA", simA);
    openPage();
    EXPECT_EQ(rows(), (Strings { "AA", "-", "-" }));
    Phone::current().pairedDevices = nullptr;
    openPage();
    EXPECT_EQ(rows(), Strings {});
    EXPECT_EQ(phone.log->lines, Strings {});
}

TEST_F(BluetoothPage, SimCellShowsCarrierNumberAndColours)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    settings->addToBluetoothDevices_defaultSIM("AA", simA);
    openPage();
    for (const bool dark : { false, true }) {
        if (dark)
            phone.appearance->becomeDark();
        page->traitCollectionDidChange();
        const UIColor color = dark ? UIColor::whiteColor() : accentColor;
        const auto cell = cellOf(*page, simRow("AA", simA));
        EXPECT_EQ(cell->style(), UITableViewCellStyle::Subtitle);
        EXPECT_EQ(cell->textLabel()->text(), "Alpha");
        EXPECT_EQ(cell->detailTextLabel()->text(), "<111>");
        EXPECT_EQ(cell->textLabel()->textColor(), color);
        EXPECT_EQ(cell->detailTextLabel()->textColor(), color);
        EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::Default);
        EXPECT_TRUE(cell->isUserInteractionEnabled());
        EXPECT_EQ(cellOf(*page, "AA")->textLabel()->textColor(), color);
        EXPECT_EQ(cellOf(*page, "AA")->selectionStyle(), UITableViewCellSelectionStyle::None);
    }
}

TEST_F(BluetoothPage, DevicesThatComeAndGoShowAtTheNextRebuildOnly)
{
    phone.devices->addDevice("Car", "AA");
    openPage();
    phone.devices->addDevice("New", "BB");
    phone.devices->removeDevice("AA");
    EXPECT_EQ(rows(), (Strings { "AA", "-" }));
    moveSwitch(*page, "AA", true);
    EXPECT_TRUE(settings->hasBluetoothDevice("AA"));
    EXPECT_EQ(rows(), (Strings { "BB", "-" }));
}

TEST_F(BluetoothPage, TwoHundredDevicesAndEqualNamesAreKeptApartByTheirAddresses)
{
    addTwoSims(true, false);
    for (int i = 0; i < 200; ++i)
        phone.devices->addDevice("Same name", "address " + std::to_string(i));
    openPage();
    moveSwitch(*page, "address 150", true);
    EXPECT_EQ(rows().size(), 200U * 2 + 3);
    EXPECT_TRUE(settings->hasBluetoothDevice("address 150"));
    EXPECT_FALSE(settings->hasBluetoothDevice("address 15"));
}

TEST_F(BluetoothPage, HostileAddressesAndKeysAreShownAndBoundUnderTheirFirstPiece)
{
    for (const std::string& address : Strings { "..", "/", "", "../../etc/passwd", std::string(10000, 'x') }) {
        SCOPED_TRACE(address.substr(0, 20));
        phone.devices->addDevice("Device", address);
        phone.subscriptions->addSim({ simA, "Home", "111", "Alpha", true });
        settings->addToBluetoothDevices_defaultSIM(address, std::nullopt);
        openPage();
        tap(*page, simRow(address, simA));
        EXPECT_EQ(settings->defaultSIMForBluetooth(address), simA);
        phone.devices->removeDevice(address);
        phone.subscriptions->removeSim(simA);
    }
    // A plus sign in a key splits it: the first piece is the device, the last the SIM.
    phone.devices->addDevice("Device", "A+B");
    phone.subscriptions->addSim({ "X+Y", "Home", "111", "Alpha", true });
    settings->addToBluetoothDevices_defaultSIM("A+B", std::nullopt);
    openPage();
    tap(*page, "A+B+X+Y");
    EXPECT_EQ(settings->defaultSIMForBluetooth("A"), "Y");
    EXPECT_EQ(settings->defaultSIMForBluetooth("A+B"), std::nullopt);
}

TEST_F(BluetoothPage, NeverWritesTheSettingsFileAndPostsNothing)
{
    addTwoSims(true, false);
    phone.devices->addDevice("Car", "AA");
    const Bytes before = *phone.readFile(TestPhone::settingsPath);
    openPage();
    moveSwitch(*page, "AA", true);
    tap(*page, simRow("AA", simB));
    moveSwitch(*page, "AA", false);
    EXPECT_EQ(phone.readFile(TestPhone::settingsPath), before);
    EXPECT_EQ(phone.notifications->names, Strings {});
}

TEST_F(BluetoothPage, HasNoFooterRow)
{
    phone.devices->addDevice("Car", "AA");
    EXPECT_EQ(openPage()->copyRightSpecifier(), nullptr);
}

} // namespace
