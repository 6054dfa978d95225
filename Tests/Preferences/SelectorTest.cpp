#include "Support/PageTest.h"
#include "TDBluetoothDevicesController.h"
#include "TDSimSettingsController.h"
#include "TDSliderCell.h"
#include "libtandem/TDSettings.h"

namespace {

struct Operations {
    const char* className;
    Strings selectors;
};

const Strings hooks { "hasCustomNavigationBarColor", "customNavigationBarColor", "twitterMessage", "twitterImage",
    "copyRightSpecifier", "copryRightSpecifierText:" };
const Strings listOperations { "initForContentSize:", "specifiers", "loadSpecifiersFromPlistName:target:",
    "vx__specifierByIdentifier:identifier:", "vx__indexByIdentifier:identifier:", "specifierAtIndex:",
    "indexForRow:inGroup:", "insertSpecifier:atIndex:animated:", "removeSpecifierAtIndex:animated:", "reloadSpecifiers",
    "showError:", "backButtonAction:", "parentController", "setParentController:", "specifier",
    "setSpecifier:", "readPreferenceValue:", "setPreferenceValue:specifier:", "viewDidLoad",
    "tableView:cellForRowAtIndexPath:", "tableView:didSelectRowAtIndexPath:",
    "tableView:estimatedHeightForRowAtIndexPath:", "tableView:heightForRowAtIndexPath:",
    "tableView:shouldHighlightRowAtIndexPath:", "title", "setTitle:", "navigationController" };
const Strings cellOperations { "initWithStyle:reuseIdentifier:specifier:", "initWithSpecifier:", "specifier", "title",
    "setTitle:", "preferredHeightForWidth:", "refreshCellContentsWithSpecifier:", "layoutSubviews", "textLabel",
    "detailTextLabel", "imageView" };
const Strings controlOperations { "control", "setControl:", "controlChanged:", "controlValue" };

Strings joined(Strings all, const Strings& more)
{
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

const std::vector<Operations>& table()
{
    static const Strings page = joined(listOperations, hooks);
    static const std::vector<Operations> all {
        { "TDRootListController",
            joined(page,
                { "settings", "setSettings:", "loadSettings", "updateSettingsDict:forKey:", "writeSettings",
                    "hideOtherSpecifiers:", "tandemEnabledOrDisabled:specifier:", "tandemSettingsChanged:",
                    "showVexilProducts:" }) },
        { "TDCallsSettingsController",
            joined(page,
                { "hideORShowCallsSpecifiers:", "hideORShowDefaultActionCellSpecifiers:",
                    "enableTandemForCalls:specifier:", "enableShowSimSelection:specifier:" }) },
        { "TDMessagesSettingsController",
            joined(page,
                { "hideORShowMessagesSpecifiers:", "hideORShowDefaultActionCellSpecifiers:",
                    "tandemEnabledOrDisabledForMessages:specifier:", "tandemEnabledOrDisabledForIMToText:specifier:",
                    "enableShowSimSelectionForMessages:specifier:" }) },
        { "TDBluetoothDevicesController",
            joined(page,
                { "blueToothSpecifiers", "setBlueToothSpecifiers:", "isBluetoothDeviceSelected:",
                    "defaultSIMUUIDString", "updateSimSelection:specifier:" }) },
        { "TDSimSettingsController",
            joined(page,
                { "simSettingsSpecifiers", "changeCarrierLogo:", "resetCarrierLogos:", "showImagePicker",
                    "imagePickerController:didFinishPickingMediaWithInfo:", "currentSubScriptionContext",
                    "setCurrentSubScriptionContext:" }) },
        { "TDMiscSettingsController",
            joined(page, { "specifiersFileName", "emailLogFile:", "serviceName", "productName", "customBackButton" }) },
        { "TDSliderCell", joined(joined(cellOperations, controlOperations), { "updateData:", "defaultCellHeight" }) },
        { "TDSegmentableSlider", { "valueTextRectForBounds:" } },
        { "TDSwitchCell", joined(joined(cellOperations, controlOperations), { "switchCellOnTintColor" }) },
        { "TDBluetoothCell",
            joined(cellOperations, { "updateData", "subTitle", "setSubTitle:", "iconImage", "setIconImage:" }) },
        { "TDSIMInfoTableCell", cellOperations },
        { "TDSIMMaskTableCell", cellOperations },
        { "TDImageCell", joined(cellOperations, { "updateData:" }) },
        { "TDSettings",
            { "sharedSettings", "reloadSettings", "isEnabled", "isEnabledForCalls", "isDefaultActionForCalls",
                "isEnabledForMessages", "isEnabledForIMToText", "isDefaultActionForMessages", "isLoggingEnabled",
                "hasBluetoothDevice:", "defaultSIMForBluetooth:", "addToBluetoothDevices:defaultSIM:",
                "removeFromBluetoothDevices:" } },
        { "TDCarrierBundleController", { "localizedCarrierNameForSubscriptionContext:" } },
        { "VXWebKitViewController", { "initWithProduct:loadDefault:", "title", "setTitle:", "viewDidLoad" } },
        { "CTXPCServiceSubscriptionContext", { "label", "uuid", "phoneNumber", "userDefaultVoice" } },
        { "NSUUID", { "UUIDString" } },
        { "BluetoothManager", { "sharedInstance", "pairedDevices" } },
        { "BluetoothDevice", { "name", "address" } },
        { "PSSpecifier",
            { "preferenceSpecifierNamed:target:set:get:detail:cell:edit:", "groupSpecifierWithName:",
                "emptyGroupSpecifier", "name", "identifier", "setIdentifier:", "userInfo", "setUserInfo:", "properties",
                "propertyForKey:", "setProperty:forKey:", "setButtonAction:" } },
    };
    return all;
}

class SelectorTest : public PageTest {
protected:
    SelectorTest()
    {
        phone.writePage("Root", plainItems({ "0", "1", "2", "3", "4", "5", "6" }));
        openRoot();
    }

    static Strings identifiers(const Value& rows)
    {
        Rows listed;
        if (!rows.array())
            return { "no rows" };
        for (const Value& row : *rows.array())
            listed.push_back(row.as<PSSpecifier>());
        return identifiersOf(listed);
    }
};

TEST_F(SelectorTest, EveryOperationAnswersToItsName)
{
    for (const Operations& operations : table()) {
        const Class* cls = NSClassFromString(operations.className);
        ASSERT_TRUE(cls) << operations.className;
        for (const std::string& selector : operations.selectors)
            EXPECT_TRUE(cls->instancesRespondToSelector(selector)) << operations.className << " " << selector;
    }
}

TEST_F(SelectorTest, OperationsThatAClassDoesNotHaveAreNotAnswered)
{
    const std::vector<Operations> absent {
        { "TDSimSettingsController",
            { "updateSimSelection:specifier:", "switchChanged:", "updateSettingsDict:forKey:" } },
        { "TDMiscSettingsController", { "settings", "updateSettingsDict:forKey:" } },
        { "TDCallsSettingsController", { "updateSettingsDict:forKey:", "hideORShowMessagesSpecifiers:" } },
        { "TDBluetoothDevicesController", { "simSettingsSpecifiers", "changeCarrierLogo:" } },
        { "PSSpecifier", { "setLegacyAction:" } },
    };
    for (const Operations& operations : absent) {
        for (const std::string& selector : operations.selectors)
            EXPECT_FALSE(NSClassFromString(operations.className)->instancesRespondToSelector(selector))
                << operations.className << " " << selector;
    }
}

TEST_F(SelectorTest, TheStoreGivesAndTakesItsSettings)
{
    phone.storeSettings({ { "Key", 1 } });
    root->performSelector("loadSettings");
    EXPECT_EQ(root->performSelector("settings"), Value(Dictionary { { "Key", 1 } }));
    root->performSelector("setSettings:", Dictionary { { "Other", true } });
    EXPECT_EQ(root->settings(), (Dictionary { { "Other", true } }));
    root->performSelector("setSettings:");
    EXPECT_EQ(root->settings(), std::nullopt);
    EXPECT_EQ(root->performSelector("settings"), Value());
}

TEST_F(SelectorTest, RowsComeAndGoAsAListOfObjects)
{
    const Value rows = root->performSelector("specifiers");
    EXPECT_EQ(identifiers(rows), (Strings { "0", "1", "2", "3", "4", "5", "6" }));
    EXPECT_EQ(rows.array()->at(2).object(), root->specifiers()[2]);
    phone.storeSettings({ { "TandemEnabled", false } });
    EXPECT_EQ(
        identifiers(root->performSelector("hideOtherSpecifiers:", rows)), (Strings { "0", "1", "3", "4", "5", "6" }));
    EXPECT_EQ(root->performSelector("vx__indexByIdentifier:identifier:", rows, "4"), Value(4));
    EXPECT_EQ(root->performSelector("vx__specifierByIdentifier:identifier:", rows, "4"), rows.array()->at(4));
    EXPECT_EQ(root->performSelector("specifierAtIndex:", 5), rows.array()->at(5));
    EXPECT_EQ(root->performSelector("indexForRow:inGroup:", 3, 0), Value(3));
    EXPECT_EQ(identifiers(root->performSelector("loadSpecifiersFromPlistName:target:", "Root", root)),
        (Strings { "0", "1", "2", "3", "4", "5", "6" }));
}

TEST_F(SelectorTest, RowsAreInsertedAndRemovedWithoutAnAnimation)
{
    const Row row = PSSpecifier::emptyGroupSpecifier();
    root->performSelector("insertSpecifier:atIndex:animated:", row, 1);
    EXPECT_EQ(root->specifiers()[1], row);
    root->performSelector("removeSpecifierAtIndex:animated:", 1, true);
    EXPECT_EQ(screen->lines, (Strings { "insert 1 -", "remove 1 - animated" }));
}

TEST_F(SelectorTest, AnInitialiserGivesTheObjectItself)
{
    const auto page = NSClassFromString("TDSimSettingsController")->alloc();
    EXPECT_EQ(page->performSelector("initForContentSize:", Array { 320, 480 }).object(), page);
    EXPECT_EQ(std::dynamic_pointer_cast<PSListController>(page)->table().frame(), (CGRect { 0, 0, 320, 480 }));
    const auto cell = NSClassFromString("TDSliderCell")->alloc();
    EXPECT_EQ(cell->performSelector("initWithSpecifier:", root->specifiers()[0]).object(), cell);
    EXPECT_EQ(cell->performSelector("title"), Value("Label of 0"));
}

TEST_F(SelectorTest, ViewDidLoadRegistersTheRootPage)
{
    const auto page = std::make_shared<TDRootListController>();
    page->initForContentSize(size);
    page->performSelector("viewDidLoad");
    EXPECT_TRUE(page->navigationItem().titleView);
}

TEST_F(SelectorTest, TheSimPageGivesItsRowsAndTakesTheSimWhoseLogoIsChanged)
{
    phone.subscriptions->addSim({ "A", "Home", "111", "Alpha", true });
    const auto page = open<TDSimSettingsController>();
    EXPECT_EQ(identifiers(page->performSelector("simSettingsSpecifiers")), (Strings { "-", "SIM+A", "LOGO+A", "-" }));
    page->performSelector("setCurrentSubScriptionContext:", "A");
    EXPECT_EQ(page->performSelector("currentSubScriptionContext"), Value("A"));
    page->performSelector("setCurrentSubScriptionContext:");
    EXPECT_EQ(page->currentSubScriptionContext(), std::nullopt);
    page->performSelector("imagePickerController:didFinishPickingMediaWithInfo:", Value(),
        Dictionary { { UIImagePickerControllerEditedImage, UIImage::imageWithData(phone.png(2, 2)) } });
    EXPECT_TRUE(phone.files->exists("/var/mobile/Library/Preferences/Tandem/(null).png"));
}

TEST_F(SelectorTest, TheBluetoothPageGivesItsRowsAndAnswersForDevices)
{
    phone.devices->addDevice("Car", "AA");
    const auto page = open<TDBluetoothDevicesController>();
    EXPECT_EQ(identifiers(page->performSelector("blueToothSpecifiers")), (Strings { "AA", "-" }));
    const auto settings = TDSettings::sharedSettings();
    settings->performSelector("addToBluetoothDevices:defaultSIM:", "AA", "SIM");
    EXPECT_EQ(page->performSelector("isBluetoothDeviceSelected:", "AA"), Value(true));
    EXPECT_EQ(settings->performSelector("defaultSIMForBluetooth:", "AA"), Value("SIM"));
    settings->performSelector("removeFromBluetoothDevices:", "AA");
    EXPECT_EQ(settings->performSelector("hasBluetoothDevice:", "AA"), Value(false));
    EXPECT_EQ(page->performSelector("isBluetoothDeviceSelected:"), Value(false));
}

TEST_F(SelectorTest, TheTablesQuestionsAreAnsweredForItsRows)
{
    const auto table = std::static_pointer_cast<UITableView>(root->table().shared_from_this());
    const Array path { 0, 2 };
    EXPECT_EQ(root->performSelector("tableView:estimatedHeightForRowAtIndexPath:", table, path), Value(44.0));
    const auto cell = root->performSelector("tableView:cellForRowAtIndexPath:", table, path).as<PSTableCell>();
    ASSERT_TRUE(cell);
    EXPECT_EQ(cell->title(), "Label of 2");
    EXPECT_EQ(root->performSelector("tableView:cellForRowAtIndexPath:", Value(), path), Value());
}

TEST_F(SelectorTest, GeometryGoesInAndOutAsLists)
{
    const auto slider = std::make_shared<TDSegmentableSlider>();
    EXPECT_EQ(slider->performSelector("valueTextRectForBounds:", Array { 0, 0, 100, 31.5 }),
        Value(Array { 60.0, 0.0, 40.0, 31.5 }));
    EXPECT_EQ(std::make_shared<TDSliderCell>()->performSelector("defaultCellHeight"), Value(70.0));
}

} // namespace
