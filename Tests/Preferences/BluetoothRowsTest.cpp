#include "Phone/CTXPCServiceSubscriptionContext.h"
#include "Support/PageTest.h"
#include "TDBluetoothDevicesController.h"
#include "libtandem/TDSettings.h"

namespace {

constexpr const char* bindingsPath = "/var/mobile/Library/Preferences/com.vexil.tandem.bluetooth.plist";
constexpr const char* sim = "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4";

class BluetoothRows : public PageTest {
protected:
    BluetoothRows()
    {
        phone.writePage("Root", {});
        phone.subscriptions->addSim({ sim, "Home", "111", "Alpha", true });
        phone.devices->addDevice("Car", "AA");
    }

    const std::shared_ptr<TDSettings> settings = TDSettings::sharedSettings();
};

TEST_F(BluetoothRows, ThatAreNotThereOrHaveNoIdentifierBindNothing)
{
    const auto page = open<TDBluetoothDevicesController>();
    for (const Row& row : { Row(), PSSpecifier::emptyGroupSpecifier() }) {
        page->setPreferenceValue_specifier(true, row);
        EXPECT_FALSE(phone.files->exists(bindingsPath));
    }
}

TEST_F(BluetoothRows, ThatAreNotThereOrHaveNoIdentifierReadAsNotBound)
{
    settings->addToBluetoothDevices_defaultSIM("", sim);
    const auto page = open<TDBluetoothDevicesController>();
    for (const Row& row : { Row(), PSSpecifier::emptyGroupSpecifier() }) {
        EXPECT_EQ(page->readPreferenceValue(row), Value(false));
        page->setPreferenceValue_specifier(true, row);
        EXPECT_TRUE(settings->hasBluetoothDevice(""));
    }
}

TEST_F(BluetoothRows, OfASimWithoutAnIdentifierBindNothingWhenTapped)
{
    const auto page = open<TDBluetoothDevicesController>();
    const Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "SIM", page, "", "", nullptr, PSCellType::Link, nullptr);
    row->setUserInfo(std::make_shared<CTXPCServiceSubscriptionContext>(
        Subscription { sim, std::nullopt, std::nullopt, std::nullopt, true }));
    page->insertSpecifier_atIndex_animated(row, 0, false);
    page->tableView_didSelectRowAtIndexPath(page->table(), { 0, 0 });
    EXPECT_FALSE(phone.files->exists(bindingsPath));
}

TEST_F(BluetoothRows, OfAnEarlierBuildStayWithWhoeverHoldsThem)
{
    const auto page = open<TDBluetoothDevicesController>();
    const Rows& earlier = page->blueToothSpecifiers();
    const Rows rows = earlier;
    phone.devices->addDevice("Speaker", "BB");
    EXPECT_EQ(identifiersOf(page->blueToothSpecifiers()), (Strings { "AA", "-", "BB", "-" }));
    EXPECT_EQ(identifiersOf(earlier), (Strings { "AA", "-" }));
    EXPECT_EQ(earlier, rows);
}

} // namespace
