#include "Bus/TestBus.h"
#include "Bus/TestDaemon.h"
#include "Linux/Bus/ObjectCache.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

constexpr const char* manager = "org.freedesktop.DBus.ObjectManager";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* oneObject = "{objectpath '/a': {'org.example.Thing': {'Name': <'A'>, 'Size': <1>}}}";

/// Objects by path, each with the name that it has.
std::map<std::string, std::string> namesIn(const BusObjects& objects)
{
    std::map<std::string, std::string> names;
    for (const auto& [path, interfaces] : objects) {
        const auto thing = interfaces.find("org.example.Thing");
        names[path] = thing == interfaces.end() ? "(no thing)" : textOf(thing->second, "Name");
    }
    return names;
}

using Named = std::map<std::string, std::string>;

class States : public testing::Test {
protected:
    States()
    {
        state->setObserver([this] { ++changes; });
    }

    bool comes(const std::function<bool()>& isSo) { return comesTrue(*context, isSo); }
    Named names() { return namesIn(state->objects()); }
    /// Waits as a page does, for as long as the state is awaited.
    void wait()
    {
        group->until([this] { return !state->isAwaited(); });
    }
    std::unique_ptr<TestDaemon> daemonWithOneObject()
    {
        auto daemon = std::make_unique<TestDaemon>(*context, machine.address());
        daemon->setObjects(oneObject);
        return daemon;
    }

    TestBus machine;
    const std::shared_ptr<BusContext> context = std::make_shared<BusContext>();
    const std::shared_ptr<Bus> bus = std::make_shared<Bus>(context, machine.address());
    const std::shared_ptr<FirstWait> group = std::make_shared<FirstWait>(context);
    std::unique_ptr<ObjectCache> state = std::make_unique<ObjectCache>(bus, TestDaemon::name, "/", group);
    int changes = 0;
};

TEST_F(States, ObjectsAreAskedForWhenTheyAreNeeded)
{
    const auto daemon = daemonWithOneObject();
    context->takeIn();
    EXPECT_FALSE(bus->isOpening());
    EXPECT_EQ(names(), Named());
    EXPECT_TRUE(state->isAwaited());
    wait();
    EXPECT_EQ(names(), (Named { { "/a", "A" } }));
    EXPECT_EQ(changes, 0);
    context->takeIn();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(daemon->questions(), 1);
}

TEST_F(States, AreKeptCurrentBySignals)
{
    const auto daemon = daemonWithOneObject();
    names();
    wait();
    daemon->sendSignal("/", manager, "InterfacesAdded", "(objectpath '/b', {'org.example.Thing': {'Name': <'B'>}})");
    EXPECT_TRUE(comes([this] { return names() == Named { { "/a", "A" }, { "/b", "B" } }; }));
    daemon->sendSignal("/a", properties, "PropertiesChanged", "('org.example.Thing', {'Name': <'C'>}, @as [])");
    EXPECT_TRUE(comes([this] { return names() == Named { { "/a", "C" }, { "/b", "B" } }; }));
    daemon->sendSignal("/b", properties, "PropertiesChanged", "('org.example.Thing', @a{sv} {}, ['Name'])");
    EXPECT_TRUE(comes([this] { return names() == Named { { "/a", "C" }, { "/b", "" } }; }));
    daemon->sendSignal("/", manager, "InterfacesAdded", "(objectpath '/b', {'org.example.Other': @a{sv} {}})");
    daemon->sendSignal("/", manager, "InterfacesRemoved", "(objectpath '/a', ['org.example.Thing'])");
    daemon->sendSignal("/", manager, "InterfacesRemoved", "(objectpath '/b', ['org.example.Thing'])");
    EXPECT_TRUE(comes([this] { return names() == Named { { "/b", "(no thing)" } }; }));
    EXPECT_EQ(daemon->questions(), 1);
}

TEST_F(States, SignalsOfOtherTypesAndOtherObjectsChangeNothing)
{
    const auto daemon = daemonWithOneObject();
    names();
    wait();
    daemon->sendSignal("/", manager, "InterfacesAdded", "('/b', 5)");
    daemon->sendSignal("/", manager, "InterfacesRemoved", "(objectpath '/nowhere', ['org.example.Thing'])");
    daemon->sendSignal("/", manager, "InterfacesRemoved", "(5,)");
    daemon->sendSignal("/nowhere", properties, "PropertiesChanged", "('org.example.Thing', {'Name': <'C'>}, @as [])");
    daemon->sendSignal("/a", properties, "PropertiesChanged", "('org.example.Other', {'Name': <'C'>}, @as [])");
    daemon->sendSignal("/a", properties, "PropertiesChanged", "('org.example.Thing',)");
    daemon->sendSignal("/", manager, "InterfacesAdded", "(objectpath '/end', {'org.example.Thing': {'Name': <'E'>}})");
    EXPECT_TRUE(comes([this] { return names().contains("/end"); }));
    EXPECT_EQ(names(), (Named { { "/a", "A" }, { "/end", "E" } }));
}

TEST_F(States, AreDroppedWithTheirDaemonAndAskedForAgainWhenItReturns)
{
    auto daemon = daemonWithOneObject();
    names();
    wait();
    daemon.reset();
    EXPECT_TRUE(comes([this] { return names().empty(); }));
    context->takeIn();
    const int before = changes;
    daemon = daemonWithOneObject();
    EXPECT_TRUE(comes([this] { return !names().empty(); }));
    EXPECT_EQ(names(), (Named { { "/a", "A" } }));
    context->takeIn();
    EXPECT_EQ(changes, before + 1);
}

TEST_F(States, OfADaemonThatStartsLateComeWithIt)
{
    EXPECT_EQ(names(), Named());
    wait();
    EXPECT_FALSE(state->isAwaited());
    const auto daemon = daemonWithOneObject();
    EXPECT_TRUE(comes([this] { return names() == Named { { "/a", "A" } }; }));
}

TEST_F(States, AreDroppedWithTheirBusAndAskedForAgainWhenItReturns)
{
    auto daemon = daemonWithOneObject();
    names();
    wait();
    machine.kill();
    EXPECT_TRUE(comes([this] { return names().empty(); }));
    EXPECT_FALSE(state->isAwaited());
    machine.start();
    daemon = daemonWithOneObject();
    bus->reopen();
    EXPECT_TRUE(comes([this] { return names() == Named { { "/a", "A" } }; }));
}

TEST_F(States, DaemonThatIsBusyIsWaitedForOnceAndHeardWhenItAnswers)
{
    const auto daemon = daemonWithOneObject();
    daemon->setBusy(true);
    names();
    const auto start = BusContext::Clock::now();
    wait();
    EXPECT_GE(BusContext::Clock::now() - start, FirstWait::longest - std::chrono::milliseconds(1));
    EXPECT_FALSE(state->isAwaited());
    EXPECT_EQ(names(), Named());
    EXPECT_EQ(daemon->questions(), 1);
    daemon->setBusy(false);
    EXPECT_TRUE(comes([this] { return names() == Named { { "/a", "A" } }; }));
}

TEST_F(States, SilentBusIsWaitedForOnce)
{
    const SilentBus silent;
    const auto hanging = std::make_shared<Bus>(context, silent.address());
    ObjectCache never(hanging, TestDaemon::name, "/", group);
    never.objects();
    const auto start = BusContext::Clock::now();
    group->until([&never] { return !never.isAwaited(); });
    EXPECT_LT(BusContext::Clock::now() - start, std::chrono::seconds(5));
    EXPECT_FALSE(never.isAwaited());
    EXPECT_TRUE(hanging->isOpening());
}

TEST_F(States, OfAGroupAreAskedForTogether)
{
    const auto daemon = daemonWithOneObject();
    ObjectCache other(bus, TestDaemon::name, "/", group);
    names();
    EXPECT_TRUE(other.isAwaited());
    wait();
    group->until([&other] { return !other.isAwaited(); });
    EXPECT_EQ(daemon->questions(), 2);
    EXPECT_EQ(namesIn(other.objects()), (Named { { "/a", "A" } }));
}

TEST_F(States, DaemonWhoseAnswerIsOfAnotherTypeHasNoObjects)
{
    const auto dbus = std::make_unique<ObjectCache>(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", group);
    dbus->objects();
    group->until([&dbus] { return !dbus->isAwaited(); });
    EXPECT_TRUE(dbus->objects().empty());
}

TEST_F(States, OneThatGoesWhileItIsAwaitedIsNotHeardOfAgain)
{
    const auto daemon = daemonWithOneObject();
    daemon->setBusy(true);
    names();
    EXPECT_TRUE(comes([&daemon] { return daemon->questions() == 1; }));
    state.reset();
    daemon->setBusy(false);
    context->takeIn();
    EXPECT_EQ(changes, 0);
}

} // namespace
