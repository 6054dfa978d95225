#include "BusLoop.h"
#include "Bus/TestBus.h"
#include "Bus/TestDaemon.h"
#include "WindowTest.h"

#include <QElapsedTimer>

namespace {

constexpr const char* bluez = "org.bluez";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* devicePath = "/org/bluez/hci0/dev_1";
constexpr const char* device = "{objectpath '/org/bluez/hci0/dev_1': {'org.bluez.Device1': {'Paired': <true>,"
                               " 'Address': <'11:22:33:44:55:66'>, 'Name': <'Car'>}}}";

/// Runs the toolkit's own loop until that is so; false when it does not become so within a minute.
bool becomes(const std::function<bool()>& isSo)
{
    constexpr int patienceMilliseconds = 60'000;
    QTimer alarm;
    alarm.setSingleShot(true);
    alarm.start(patienceMilliseconds);
    while (!isSo() && alarm.isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return isSo();
}

/// A window on this machine, whose BlueZ is the test's.
class BusLoopTest : public WindowTest {
protected:
    BusLoopTest()
    {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", QByteArray::fromStdString(_machine.address()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
        _phone = HostOptions::linuxPhone;
        openWindow();
        _bluez = std::make_unique<TestDaemon>(*host().session().busContext(), _machine.address(), bluez);
        _bluez->setObjects(device);
    }
    ~BusLoopTest() override { _bluez.reset(); }

    void rename(const std::string& name)
    {
        _bluez->sendSignal(
            devicePath, properties, "PropertiesChanged", "('org.bluez.Device1', {'Name': <'" + name + "'>}, @as [])");
    }
    /// What the page shows at its beginning; empty when there is nothing.
    std::string firstName()
    {
        const Rows& rows = page().list()->specifiers();
        return rows.empty() ? std::string() : rows.front()->name().value_or(std::string());
    }

    TestBus _machine;
    std::unique_ptr<TestDaemon> _bluez;
};

TEST_F(BusLoopTest, DeviceThatChangesIsShownByTheOpenPage)
{
    openPage("Bluetooth");
    EXPECT_EQ(firstName(), "Car");
    EXPECT_EQ(item("11:22:33:44:55:66")->name(), "Car");
    rename("Bike");
    EXPECT_TRUE(becomes([this] { return firstName() == "Bike"; }));
    EXPECT_EQ(item("11:22:33:44:55:66")->name(), "Bike");
    _bluez.reset();
    EXPECT_TRUE(becomes([this] { return firstName().empty(); }));
}

TEST_F(BusLoopTest, DaemonThatAnswersLateIsShownByTheOpenPage)
{
    _bluez->setBusy(true);
    openPage("Bluetooth");
    EXPECT_EQ(firstName(), "");
    _bluez->setBusy(false);
    EXPECT_TRUE(becomes([this] { return firstName() == "Car"; }));
    EXPECT_EQ(item("11:22:33:44:55:66")->name(), "Car");
}

TEST_F(BusLoopTest, PageBelowAnotherIsLeftAlone)
{
    openPage("Bluetooth");
    page().goBack();
    settle();
    const Rows before = page().list()->specifiers();
    rename("Bike");
    EXPECT_TRUE(becomes([this] { return Phone::current().pairedDevices->devices().front().name == "Bike"; }));
    settle();
    EXPECT_EQ(page().list()->specifiers(), before);
}

TEST(BusLoops, TimersAndNewsAreDelivered)
{
    BusContext context;
    const BusLoop loop(context);
    bool isTold = false;
    int rings = 0;
    BusHandle second;
    const auto first = context.callLater(std::chrono::milliseconds(1), [&] {
        ++rings;
        // What a turn asks for meanwhile is waited for as well.
        second = context.callLater(std::chrono::milliseconds(1), [&rings] { ++rings; });
        context.takeIn();
    });
    const auto news = context.tell([&isTold] { isTold = true; });
    EXPECT_TRUE(becomes([&] { return isTold && rings == 2; }));
}

} // namespace
