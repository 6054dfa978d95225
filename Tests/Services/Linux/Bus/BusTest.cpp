#include "Bus/TestBus.h"
#include "Bus/TestDaemon.h"
#include "Linux/Bus/BusAddress.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace {

using Names = std::vector<std::string>;

constexpr const char* nobody = "org.example.Nobody";
constexpr const char* path = "/org/example";
constexpr const char* interface = "org.example.Interface";
constexpr const char* noOwner = "org.freedesktop.DBus.Error.NameHasNoOwner";

class Buses : public testing::Test {
protected:
    std::unique_ptr<Bus> busAt(const std::string& address) { return std::make_unique<Bus>(context, address); }
    bool comes(const std::function<bool()>& isSo) { return comesTrue(*context, isSo); }

    /// What the request comes to.
    BusReply replyTo(Bus& bus, const BusRequest& request)
    {
        std::optional<BusReply> found;
        const auto call = bus.call(request, [&found](const BusReply& reply) { found = reply; });
        EXPECT_FALSE(found);
        EXPECT_TRUE(comes([&found] { return found.has_value(); }));
        return found.value_or(BusReply());
    }

    static BusRequest requestToNobody()
    {
        BusRequest request;
        request.name = nobody;
        request.path = path;
        request.interface = interface;
        request.method = "Ask";
        return request;
    }

    const std::shared_ptr<BusContext> context = std::make_shared<BusContext>();
};

TEST_F(Buses, RequestIsAnswered)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    const BusReply reply =
        replyTo(*bus, requestToBus("GetNameOwner", Variant::ofTuple({ Variant::ofText("org.freedesktop.DBus") })));
    EXPECT_EQ(reply.value("s").text(), "org.freedesktop.DBus");
    EXPECT_EQ(reply.error, "");
    EXPECT_EQ(reply.sender, "org.freedesktop.DBus");
    EXPECT_FALSE(reply.value("u"));
    EXPECT_TRUE(bus->isConnected());
}

TEST_F(Buses, RequestThatIsRefusedFailsWithTheErrorsName)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    EXPECT_EQ(replyTo(*bus, requestToNobody()).error, noOwner);
    EXPECT_FALSE(replyTo(*bus, requestToNobody()).values);
}

TEST_F(Buses, RequestToABusThatIsNotThere)
{
    const TemporaryDirectory folder;
    const auto bus = busAt("unix:path=" + folder.path("nothing"));
    EXPECT_EQ(replyTo(*bus, requestToNobody()).error, BusReply::disconnected);
    EXPECT_EQ(replyTo(*bus, requestToNobody()).error, BusReply::disconnected);
    EXPECT_FALSE(bus->isOpening());
}

TEST_F(Buses, RequestIsNoLongerAwaitedThanItsPatience)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    TestDaemon busy(*context, daemon.address());
    busy.setBusy(true);
    BusRequest request { TestDaemon::name, "/", "org.freedesktop.DBus.ObjectManager", "GetManagedObjects", {}, {},
        BusRequest::AutoStart::No, std::chrono::milliseconds(1) };
    EXPECT_EQ(replyTo(*bus, request).error, BusReply::noReply);
}

TEST_F(Buses, RequestThatIsDroppedIsNotHeardOfAgain)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    bool isHeard = false;
    auto early = bus->call(requestToNobody(), [&isHeard](const BusReply&) { isHeard = true; });
    early.reset();
    replyTo(*bus, requestToNobody());
    auto late = bus->call(requestToNobody(), [&isHeard](const BusReply&) { isHeard = true; });
    late.reset();
    replyTo(*bus, requestToNobody());
    EXPECT_FALSE(isHeard);
}

TEST_F(Buses, RequestDuringWhichTheBusDies)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    TestDaemon busy(*context, daemon.address());
    busy.setBusy(true);
    BusRequest request = requestToNobody();
    request.name = TestDaemon::name;
    request.path = "/";
    request.interface = "org.freedesktop.DBus.ObjectManager";
    request.method = "GetManagedObjects";
    std::string error;
    const auto call = bus->call(request, [&error](const BusReply& reply) { error = reply.error; });
    ASSERT_TRUE(comes([&busy] { return busy.questions() == 1; }));
    daemon.kill();
    EXPECT_TRUE(comes([&error] { return !error.empty(); }));
    EXPECT_EQ(error, BusReply::disconnected);
}

TEST_F(Buses, BusThatSaysNothingKeepsNobodyWaitingAndIsNotWaitedForAtTheEnd)
{
    const SilentBus silent;
    const auto start = BusContext::Clock::now();
    {
        const auto bus = busAt(silent.address());
        bool isHeard = false;
        const auto call = bus->call(requestToNobody(), [&isHeard](const BusReply&) { isHeard = true; });
        EXPECT_FALSE(context->waitUntil([&isHeard] { return isHeard; }, start + std::chrono::milliseconds(50)));
        EXPECT_TRUE(bus->isOpening());
        context->takeIn();
    }
    EXPECT_LT(BusContext::Clock::now() - start, std::chrono::seconds(5));
}

TEST_F(Buses, BusThatTurnsEverybodyAwayAfterAWhileIsAbsent)
{
    SilentBus silent;
    const auto bus = busAt(silent.address());
    std::string error;
    const auto call = bus->call(requestToNobody(), [&error](const BusReply& reply) { error = reply.error; });
    context->takeIn();
    EXPECT_EQ(error, "");
    silent.turnAway();
    EXPECT_TRUE(comes([&error] { return !error.empty(); }));
    EXPECT_EQ(error, BusReply::disconnected);
    EXPECT_FALSE(bus->isOpening());
}

TEST_F(Buses, BusThatHangsIsUsedWhenItWakes)
{
    TestBus daemon;
    daemon.hang();
    const auto bus = busAt(daemon.address());
    std::string error;
    const auto call = bus->call(requestToNobody(), [&error](const BusReply& reply) { error = reply.error; });
    context->takeIn();
    EXPECT_TRUE(bus->isOpening());
    daemon.wake();
    EXPECT_TRUE(comes([&error] { return !error.empty(); }));
    EXPECT_EQ(error, noOwner);
}

TEST_F(Buses, BusThatComesLateIsConnectedToInALaterTurn)
{
    TestBus daemon;
    daemon.kill();
    const auto bus = busAt(daemon.address());
    EXPECT_EQ(replyTo(*bus, requestToNobody()).error, BusReply::disconnected);
    daemon.start();
    EXPECT_EQ(replyTo(*bus, requestToNobody()).error, BusReply::disconnected);
    bus->reopen();
    EXPECT_EQ(replyTo(*bus, requestToNobody()).error, noOwner);
}

TEST_F(Buses, BusThatNobodyNeedsIsNotConnectedTo)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    const auto subscription = bus->subscribe({}, [](const BusSignal&) {});
    bus->reopen();
    EXPECT_FALSE(bus->isOpening());
    EXPECT_FALSE(bus->isConnected());
}

TEST_F(Buses, SignalsAreHeardBySubscribersAndByNoOthers)
{
    TestBus daemon;
    const auto listener = busAt(daemon.address());
    const auto poster = busAt(daemon.address());
    Names heard;
    const auto hear = [&heard](const BusSignal& signal) { heard.push_back(signal.values[0].text().value()); };
    const auto text = listener->subscribe({ {}, path, interface, "Said", "a" }, hear);
    auto dropped = listener->subscribe({ {}, path, interface, "Said", {} }, hear);
    dropped.reset();
    const auto end = listener->subscribe({ {}, {}, {}, "Ended", {} }, hear);
    replyTo(*listener, requestToBus("GetId", {}));
    poster->sendSignal(path, interface, "Said", Variant::ofTuple({ Variant::ofText("b") }));
    poster->sendSignal(path, interface, "Said", Variant::ofTuple({ Variant::ofText("a") }));
    poster->sendSignal(path, "org.example.Other", "Said", Variant::ofTuple({ Variant::ofText("a") }));
    poster->sendSignal("/other", interface, "Ended", Variant::ofTuple({ Variant::ofText("end") }));
    EXPECT_TRUE(comes([&heard] { return heard.size() >= 2; }));
    EXPECT_EQ(heard, (Names { "a", "end" }));
}

TEST_F(Buses, SubscriptionsOutliveTheBus)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    int connections = 0;
    int losses = 0;
    Names heard;
    const auto connected = bus->whenConnected([&connections] { ++connections; });
    const auto lost = bus->whenLost([&losses] { ++losses; });
    const auto text =
        bus->subscribe({ {}, path, {}, {}, {} }, [&heard](const BusSignal& signal) { heard.push_back(signal.member); });
    bus->open();
    EXPECT_TRUE(comes([&connections] { return connections == 1; }));
    daemon.kill();
    EXPECT_TRUE(comes([&losses] { return losses == 1; }));
    EXPECT_FALSE(bus->isConnected());
    bus->sendSignal(path, interface, "Lost", Variant::ofTuple({}));
    daemon.start();
    bus->reopen();
    bus->sendSignal(path, interface, "Said", Variant::ofTuple({}));
    EXPECT_TRUE(comes([&heard] { return !heard.empty(); }));
    EXPECT_EQ(heard, (Names { "Said" }));
    EXPECT_EQ(connections, 2);
    EXPECT_EQ(losses, 1);
}

TEST_F(Buses, OwnerOfANameIsFollowed)
{
    TestBus daemon;
    const auto bus = busAt(daemon.address());
    std::vector<bool> hasOwner;
    const auto watch = bus->watchOwner(
        TestDaemon::name, [&hasOwner](const std::string& owner) { hasOwner.push_back(!owner.empty()); });
    replyTo(*bus, requestToBus("GetId", {}));
    auto first = std::make_unique<TestDaemon>(*context, daemon.address());
    first.reset();
    const TestDaemon second(*context, daemon.address());
    EXPECT_TRUE(comes([&hasOwner] { return hasOwner.size() >= 3; }));
    daemon.kill();
    EXPECT_TRUE(comes([&hasOwner] { return hasOwner.size() >= 4; }));
    EXPECT_EQ(hasOwner, (std::vector<bool> { true, false, true, false }));
}

TEST_F(Buses, BrokenPipesEndTheProcessAsBefore)
{
    TestBus daemon;
    struct sigaction before { };
    sigaction(SIGPIPE, nullptr, &before);
    const auto bus = busAt(daemon.address());
    replyTo(*bus, requestToBus("GetId", {}));
    struct sigaction after { };
    sigaction(SIGPIPE, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}

TEST(BusContexts, NewsIsDeliveredOnceAndNotWhileSomebodyWaits)
{
    BusContext context;
    int told = 0;
    const auto item = context.tell([&told] { ++told; });
    auto dropped = context.tell([&told] { told += 10; });
    dropped.reset();
    EXPECT_EQ(context.nextWait().timeout, std::chrono::milliseconds(0));
    EXPECT_FALSE(
        context.waitUntil([&told] { return told > 0; }, BusContext::Clock::now() + std::chrono::milliseconds(1)));
    context.takeIn();
    context.takeIn();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(context.nextWait().timeout, std::nullopt);
}

TEST(BusContexts, TimersAreCalledOnceAndNotWhenDropped)
{
    BusContext context;
    int called = 0;
    auto dropped = context.callLater(std::chrono::milliseconds(0), [&called] { called += 10; });
    const auto timer = context.callLater(std::chrono::milliseconds(1), [&called] { ++called; });
    dropped.reset();
    EXPECT_LE(context.nextWait().timeout, std::chrono::milliseconds(1));
    EXPECT_TRUE(comesTrue(context, [&called] { return called > 0; }));
    EXPECT_EQ(context.nextWait().timeout, std::nullopt);
    EXPECT_EQ(called, 1);
}

TEST(BusAddresses, ThoseOfSocketsAreUsed)
{
    EXPECT_EQ(socketAddressesOf("unixexec:path=/a;unix:path=/b;autolaunch:;tcp:host=localhost,port=1;"),
        "unix:path=/b;tcp:host=localhost,port=1");
    EXPECT_EQ(socketAddressesOf("autolaunch:"), "");
    EXPECT_EQ(socketAddressesOf(""), "");
}

} // namespace
