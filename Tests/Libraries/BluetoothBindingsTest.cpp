#include "Support/TestPhone.h"
#include "libtandem/TDSettings.h"

namespace {

constexpr const char* path = "/var/mobile/Library/Preferences/com.vexil.tandem.bluetooth.plist";
constexpr const char* car = "AA:BB:CC:DD:EE:FF";
constexpr const char* headset = "11:22:33:44:55:66";
constexpr const char* firstSim = "6B29FC40-CA47-1067-B31D-00DD010662DA";
constexpr const char* secondSim = "7B29FC40-CA47-1067-B31D-00DD010662DB";

class BluetoothBindings : public ::testing::Test {
protected:
    void bind(const std::string& address, const std::optional<std::string>& sim)
    {
        TDSettings::sharedSettings()->addToBluetoothDevices_defaultSIM(address, sim);
    }
    void unbind(const std::string& address) { TDSettings::sharedSettings()->removeFromBluetoothDevices(address); }
    /// "bound" or "free", and the SIM.
    static std::string stateOf(const std::string& address)
    {
        const auto settings = TDSettings::sharedSettings();
        return std::string(settings->hasBluetoothDevice(address) ? "bound " : "free ")
            + settings->defaultSIMForBluetooth(address).value_or("-");
    }

    TestPhone phone { PSSpecifier::classObject() };
};

TEST_F(BluetoothBindings, OfADeviceThatWasNeverBoundAreFree)
{
    EXPECT_EQ(stateOf(car), "free -");
    EXPECT_FALSE(phone.files->exists(path));
}

TEST_F(BluetoothBindings, AreMadeWithASim)
{
    bind(car, firstSim);
    EXPECT_EQ(stateOf(car), std::string("bound ") + firstSim);
    EXPECT_EQ(phone.readPropertyList(path),
        Value(Dictionary { { car, Dictionary { { "bound", true }, { "sim", firstSim } } } }));
}

TEST_F(BluetoothBindings, HoldTheKeyOfTheSimInUpperCase)
{
    bind(car, "6b29fc40-ca47-1067-b31d-00dd010662da");
    EXPECT_EQ(phone.readPropertyList(path),
        Value(Dictionary { { car, Dictionary { { "bound", true }, { "sim", firstSim } } } }));
    phone.writePropertyList(path,
        Dictionary { { car, Dictionary { { "bound", true }, { "sim", "7b29fc40-CA47-1067-b31d-00dd010662db" } } } });
    EXPECT_EQ(stateOf(car), std::string("bound ") + secondSim);
}

TEST_F(BluetoothBindings, AreReplacedByALaterOne)
{
    bind(car, firstSim);
    bind(car, secondSim);
    EXPECT_EQ(stateOf(car), std::string("bound ") + secondSim);
}

TEST_F(BluetoothBindings, MayBeToNoSim)
{
    bind(car, std::nullopt);
    EXPECT_EQ(stateOf(car), "bound -");
    bind(car, firstSim);
    bind(car, std::nullopt);
    EXPECT_EQ(stateOf(car), "bound -");
    bind(car, "");
    EXPECT_EQ(stateOf(car), "bound ");
}

TEST_F(BluetoothBindings, ThatAreUndoneRememberTheSim)
{
    bind(car, firstSim);
    unbind(car);
    EXPECT_EQ(stateOf(car), std::string("free ") + firstSim);
    unbind(car);
    EXPECT_EQ(stateOf(car), std::string("free ") + firstSim);
}

TEST_F(BluetoothBindings, OfNoSimThatAreUndoneRememberNone)
{
    bind(car, std::nullopt);
    unbind(car);
    EXPECT_EQ(stateOf(car), "free -");
    unbind(headset);
    EXPECT_EQ(stateOf(headset), "free -");
}

TEST_F(BluetoothBindings, OfTwoDevicesDoNotTouchEachOther)
{
    bind(car, firstSim);
    bind(headset, secondSim);
    unbind(car);
    EXPECT_EQ(stateOf(car), std::string("free ") + firstSim);
    EXPECT_EQ(stateOf(headset), std::string("bound ") + secondSim);
}

TEST_F(BluetoothBindings, AreKeptByTheExactAddress)
{
    bind(car, firstSim);
    for (const char* other : { "", "aa:bb:cc:dd:ee:ff", "AA:BB:CC:DD:EE:F", "AA:BB:CC:DD:EE:FF ", "AABBCCDDEEFF" })
        EXPECT_EQ(stateOf(other), "free -") << other;
}

TEST_F(BluetoothBindings, OfStrangeAddressesAreKeptLikeAnyOther)
{
    const Strings addresses { "", "+", "a+b", "bound", "sim", "../../etc", "/", "%@%n", "$null", "\n", "日本 📱",
        std::string(100000, 'A') };
    for (const std::string& address : addresses)
        bind(address, "SIM of " + address.substr(0, 20));
    for (const std::string& address : addresses)
        EXPECT_EQ(stateOf(address), "bound SIM of " + address.substr(0, 20)) << address.substr(0, 20);
    for (const std::string& address : addresses)
        unbind(address);
    for (const std::string& address : addresses)
        EXPECT_EQ(stateOf(address), "free SIM of " + address.substr(0, 20)) << address.substr(0, 20);
}

TEST_F(BluetoothBindings, ThatNoPropertyListHoldsAreNotKeptAndLeaveTheOthers)
{
    bind(car, firstSim);
    const auto before = phone.readFile(path);
    for (const std::string& address : { std::string("\xFF\xFE"), std::string("\xED\xA0\x80") }) {
        bind(address, firstSim);
        EXPECT_EQ(stateOf(address), "free -");
        unbind(address);
    }
    bind(headset, "\xFF");
    EXPECT_EQ(stateOf(headset), "free -");
    EXPECT_EQ(phone.readFile(path), before);
}

TEST_F(BluetoothBindings, AreReadAnewAtEachQuestion)
{
    bind(car, firstSim);
    phone.writePropertyList(path, Dictionary { { headset, Dictionary { { "bound", true }, { "sim", secondSim } } } });
    EXPECT_EQ(stateOf(car), "free -");
    EXPECT_EQ(stateOf(headset), std::string("bound ") + secondSim);
}

TEST_F(BluetoothBindings, OfOtherProcessesSurviveABinding)
{
    phone.writePropertyList(path, Dictionary { { headset, Dictionary { { "bound", true } } }, { "other", 5 } });
    bind(car, firstSim);
    EXPECT_EQ(phone.readPropertyList(path),
        Value(Dictionary { { headset, Dictionary { { "bound", true } } }, { "other", 5 },
            { car, Dictionary { { "bound", true }, { "sim", firstSim } } } }));
}

TEST_F(BluetoothBindings, OfAnotherShapeAreFree)
{
    for (const Value& entry : { Value(true), Value(firstSim), Value(Array { true, firstSim }), Value(Dictionary {}),
             Value(Dictionary { { "bound", Array { true } }, { "sim", 5 } }) }) {
        phone.writePropertyList(path, Dictionary { { car, entry } });
        EXPECT_EQ(stateOf(car), "free -");
    }
    phone.writePropertyList(path, Dictionary { { car, Dictionary { { "bound", "YES" }, { "sim", firstSim } } } });
    EXPECT_EQ(stateOf(car), std::string("bound ") + firstSim);
}

TEST_F(BluetoothBindings, InAMalformedFileAreFreeAndTheNextOneReplacesItKeepingItBeside)
{
    for (const std::string content : { "", "bplist00", "<plist><array/></plist>", "garbage" }) {
        phone.writeFile(path, Bytes(content.begin(), content.end()));
        EXPECT_EQ(stateOf(car), "free -") << content;
        bind(car, firstSim);
        EXPECT_EQ(stateOf(car), std::string("bound ") + firstSim) << content;
        const auto kept = phone.readFile(std::string(path) + ".torn").value_or(Bytes());
        EXPECT_EQ(std::string(kept.begin(), kept.end()), content);
    }
}

TEST_F(BluetoothBindings, CutOffAtAnyByteAreFree)
{
    bind(car, firstSim);
    const Bytes whole = *phone.readFile(path);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        phone.writeFile(path, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_EQ(stateOf(car), "free -") << length;
    }
}

TEST_F(BluetoothBindings, ThatCannotBeWrittenAreNotKept)
{
    phone.files->createDirectory(path);
    bind(car, firstSim);
    EXPECT_EQ(stateOf(car), "free -");
    unbind(car);
    Phone::setCurrent({});
    bind(car, firstSim);
    unbind(car);
    EXPECT_EQ(stateOf(car), "free -");
}

TEST_F(BluetoothBindings, DoNotTouchTheSettingsAndPostNothing)
{
    phone.storeSettings({ { "Key", 1 } });
    bind(car, firstSim);
    unbind(car);
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", 1 } }));
    EXPECT_EQ(phone.notifications->names, Strings {});
}

} // namespace
