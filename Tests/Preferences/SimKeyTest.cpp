#include "Phone/CTXPCServiceSubscriptionContext.h"
#include "Support/PageTest.h"
#include "TDBluetoothDevicesController.h"
#include "TDSimSettingsController.h"
#include "libtandem/TDSettings.h"

namespace {

constexpr const char* lowerCaseKey = "6f1d2c3a-84b7-4e15-9a60-2d7b5c91e3f4";
constexpr const char* key = "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4";
constexpr const char* bindingsPath = "/var/mobile/Library/Preferences/com.vexil.tandem.bluetooth.plist";
constexpr const char* logoPath = "/var/mobile/Library/Preferences/Tandem/6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4.png";

/// A SIM whose key another program spells in lower case.
class LowerCaseSimKey : public PageTest {
protected:
    LowerCaseSimKey()
    {
        phone.writePage("Root", {});
        phone.subscriptions->addSim({ lowerCaseKey, "Home", "111", "Alpha", true });
        phone.devices->addDevice("Car", "AA");
    }

    const std::shared_ptr<TDSettings> settings = TDSettings::sharedSettings();
};

TEST_F(LowerCaseSimKey, IsInUpperCaseInTheRowsAndTheLogOfTheSimPage)
{
    const auto page = open<TDSimSettingsController>();
    EXPECT_EQ(identifiersOf(page->specifiers()),
        (Strings { "-", "SIM+" + std::string(key), "LOGO+" + std::string(key), "-" }));
    EXPECT_EQ(phone.log->lines,
        Strings { "**************** subscriptions: (\n    <CTXPCServiceSubscriptionContext " + std::string(key)
            + ", label Home>\n)" });
}

TEST_F(LowerCaseSimKey, NamesTheLogoInUpperCase)
{
    const auto page = open<TDSimSettingsController>();
    tap(*page, "LOGO+" + std::string(key));
    std::dynamic_pointer_cast<UIAlertController>(page->presentedViewController())->chooseAction(0);
    std::dynamic_pointer_cast<UIImagePickerController>(page->presentedViewController())
        ->finishPickingImage(UIImage::imageWithData(phone.png(2, 2)));
    EXPECT_TRUE(phone.files->exists(logoPath));
}

TEST_F(LowerCaseSimKey, IsBoundInUpperCase)
{
    const auto page = open<TDBluetoothDevicesController>();
    moveSwitch(*page, "AA", true);
    EXPECT_EQ(phone.readPropertyList(bindingsPath),
        Value(Dictionary { { "AA", Dictionary { { "bound", true }, { "sim", key } } } }));
}

TEST_F(LowerCaseSimKey, InTheFileOfBindingsCarriesTheCheckmark)
{
    phone.writePropertyList(
        bindingsPath, Dictionary { { "AA", Dictionary { { "bound", true }, { "sim", lowerCaseKey } } } });
    const auto page = open<TDBluetoothDevicesController>();
    EXPECT_EQ(settings->defaultSIMForBluetooth("AA"), key);
    EXPECT_EQ(cellOf(*page, "AA+" + std::string(key))->accessoryType(), UITableViewCellAccessoryType::Checkmark);
}

TEST_F(LowerCaseSimKey, InTheFileOfBindingsIsNotBoundAgainByATapOnItsRow)
{
    phone.writePropertyList(
        bindingsPath, Dictionary { { "AA", Dictionary { { "bound", true }, { "sim", lowerCaseKey } } } });
    const auto before = phone.readFile(bindingsPath);
    const auto page = open<TDBluetoothDevicesController>();
    tap(*page, "AA+" + std::string(key));
    EXPECT_EQ(phone.readFile(bindingsPath), before);
}

TEST_F(LowerCaseSimKey, StaysWithADeviceThatIsSwitchedOffInUpperCase)
{
    phone.writePropertyList(
        bindingsPath, Dictionary { { "AA", Dictionary { { "bound", true }, { "sim", lowerCaseKey } } } });
    moveSwitch(*open<TDBluetoothDevicesController>(), "AA", false);
    EXPECT_EQ(phone.readPropertyList(bindingsPath),
        Value(Dictionary { { "AA", Dictionary { { "bound", false }, { "sim", key } } } }));
}

TEST_F(LowerCaseSimKey, ThatIsNoUuidStaysAsItIs)
{
    for (const char* other : { "", "sim-a", "6f1d2c3a-84b7-4e15-9a60-2d7b5c91e3fg", "6f1d2c3a84b74e159a602d7b5c91e3f4",
             "6f1d2c3a-84b7-4e15-9a60-2d7b5c91e3f4 " })
        EXPECT_EQ(NSUUID(other).UUIDString(), other);
}

} // namespace
