#include "Phone/BluetoothManager.h"
#include "Phone/CTXPCServiceSubscriptionContext.h"
#include "Platform/PhoneTest.h"

namespace {

class PhoneServices : public PhoneTest {
protected:
    static Strings pairedDevices()
    {
        Strings devices;
        for (const auto& device : BluetoothManager::sharedInstance()->pairedDevices())
            devices.push_back(device->name() + " " + device->address());
        return devices;
    }
};

TEST_F(PhoneServices, ClassesAreFoundByName)
{
    for (const char* name : { "BluetoothManager", "BluetoothDevice", "CTXPCServiceSubscriptionContext", "NSUUID" }) {
        ASSERT_TRUE(NSClassFromString(name)) << name;
        EXPECT_EQ(NSClassFromString(name)->name(), name);
    }
}

TEST_F(PhoneServices, PairedDevicesComeInTheServicesOrderAtEachCall)
{
    EXPECT_EQ(pairedDevices(), Strings {});
    phone.devices->addDevice("Car", "AA:BB");
    phone.devices->addDevice("", "");
    phone.devices->addDevice("Head+phones", "CC:DD");
    EXPECT_EQ(pairedDevices(), (Strings { "Car AA:BB", " ", "Head+phones CC:DD" }));
    phone.devices->removeDevice("AA:BB");
    EXPECT_EQ(pairedDevices(), (Strings { " ", "Head+phones CC:DD" }));
}

TEST_F(PhoneServices, WithoutABluetoothServiceNothingIsPaired)
{
    phone.devices->addDevice("Car", "AA:BB");
    Phone::current().pairedDevices = nullptr;
    EXPECT_EQ(pairedDevices(), Strings {});
}

TEST_F(PhoneServices, SubscriptionContextSaysWhatTheServiceKnows)
{
    const CTXPCServiceSubscriptionContext context({ "UUID", "Private", "0123", "Carrier", true });
    EXPECT_EQ(context.uuid().UUIDString(), "UUID");
    EXPECT_EQ(context.label(), "Private");
    EXPECT_EQ(context.phoneNumber(), "0123");
    EXPECT_EQ(context.carrierName(), "Carrier");
    EXPECT_TRUE(context.userDefaultVoice());
    EXPECT_EQ(context.description(), "<CTXPCServiceSubscriptionContext UUID, label Private>");
}

TEST_F(PhoneServices, SubscriptionContextOfNothingIsEmpty)
{
    const CTXPCServiceSubscriptionContext context;
    EXPECT_EQ(context.uuid().UUIDString(), "");
    EXPECT_EQ(context.label(), std::nullopt);
    EXPECT_EQ(context.phoneNumber(), std::nullopt);
    EXPECT_EQ(context.carrierName(), std::nullopt);
    EXPECT_FALSE(context.userDefaultVoice());
    EXPECT_EQ(context.description(), "<CTXPCServiceSubscriptionContext , label (null)>");
}

TEST_F(PhoneServices, PhoneThatWasNeverSetHasNoServices)
{
    Phone::setCurrent({});
    const Phone& bare = Phone::current();
    EXPECT_FALSE(bare.files || bare.propertyLists || bare.images || bare.systemLog || bare.darwinNotifications
        || bare.pairedDevices || bare.subscriptions || bare.homeScreen || bare.appIcons || bare.appearance
        || bare.textMeasure || bare.mail || bare.links);
    EXPECT_EQ(bare.screenScale, 2);
    EXPECT_TRUE(bare.languages.empty());
}

} // namespace
