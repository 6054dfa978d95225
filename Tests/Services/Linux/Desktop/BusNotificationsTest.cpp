#include "Linux/Desktop/BusNotifications.h"

#include "Bus/TestBus.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

constexpr std::size_t many = 10'000;
constexpr const char* path = "/com/vexil/DarwinNotifications";
constexpr const char* interface = "com.vexil.DarwinNotifications";

/// Two programs on one bus.
class NotificationBus : public ::testing::Test {
protected:
    bool comes(const std::function<bool()>& isSo) { return comesTrue(*context, isSo); }

    /// From now on the bus delivers to the listener what it has asked for.
    void startListening(Bus& bus)
    {
        bool isReady = false;
        const auto call = bus.call(requestToBus("GetId", {}), [&isReady](const BusReply&) { isReady = true; });
        EXPECT_TRUE(comes([&isReady] { return isReady; }));
    }

    void waitFor(std::size_t count)
    {
        EXPECT_TRUE(comes([&] { return heard.size() >= count; }));
    }

    const std::shared_ptr<BusContext> context = std::make_shared<BusContext>();
    TestBus daemon;
    const std::shared_ptr<Bus> posterBus = std::make_shared<Bus>(context, daemon.address());
    const std::shared_ptr<Bus> listenerBus = std::make_shared<Bus>(context, daemon.address());
    Names heard;
    const DarwinNotifications::Handler hear = [this](const std::string& name) { heard.push_back(name); };
    BusNotifications poster { posterBus };
    BusNotifications listener { listenerBus };
};

TEST_F(NotificationBus, TenThousandAreDeliveredInOrderToTheListenerAndToThePoster)
{
    Names heardByPoster;
    Names expected;
    listener.addObserverOfAll(hear);
    poster.addObserverOfAll([&](const std::string& name) { heardByPoster.push_back(name); });
    startListening(*listenerBus);
    startListening(*posterBus);
    for (std::size_t i = 0; i < many; ++i) {
        expected.push_back("n" + std::to_string(i));
        poster.post(expected.back());
    }
    waitFor(many);
    EXPECT_TRUE(comes([&] { return heardByPoster.size() >= many; }));
    EXPECT_EQ(heard, expected);
    EXPECT_EQ(heardByPoster, expected);
}

TEST_F(NotificationBus, ObserversHearTheirNameAndNoOther)
{
    for (const char* name : { "a", "b", "a", "with 'quotes'" })
        listener.addObserver(name, hear);
    startListening(*listenerBus);
    for (const char* name : { "c", "b", "a", "with 'quotes'", "b" })
        poster.post(name);
    waitFor(5);
    EXPECT_EQ(heard, (Names { "b", "a", "a", "with 'quotes'", "b" }));
}

TEST_F(NotificationBus, NamesThatTheBusCannotSelect)
{
    const std::string longest(255, 'a');
    const Names names { "a\n", "", "ü", longest, longest + "a", "end" };
    for (const std::string& name : names)
        listener.addObserver(name, hear);
    startListening(*listenerBus);
    poster.post("a");
    for (const std::string& name : names)
        poster.post(name);
    waitFor(names.size());
    EXPECT_EQ(heard, names);
}

TEST_F(NotificationBus, ObserversAreNotCalledWhileAPageWaits)
{
    listener.addObserverOfAll(hear);
    startListening(*listenerBus);
    bool hasCome = false;
    const auto signal = listenerBus->subscribe({ {}, path, {}, {}, {} }, [&](const BusSignal&) { hasCome = true; });
    startListening(*listenerBus);
    poster.post("a");
    EXPECT_TRUE(context->waitUntil([&] { return hasCome; }, BusContext::Clock::now() + std::chrono::minutes(1)));
    EXPECT_EQ(heard, Names());
    waitFor(1);
    EXPECT_EQ(heard, Names { "a" });
}

TEST_F(NotificationBus, SignalOfAnotherFormIsNone)
{
    listener.addObserverOfAll(hear);
    startListening(*listenerBus);
    posterBus->sendSignal(path, interface, "Posted", Variant::ofTuple({}));
    posterBus->sendSignal(path, interface, "Posted", Variant::ofTuple({ Variant::ofUnsigned(1) }));
    posterBus->sendSignal(path, interface, "Posted", Variant::ofTuple({ Variant::ofText("a"), Variant::ofText("b") }));
    poster.post("end");
    waitFor(1);
    EXPECT_EQ(heard, Names { "end" });
}

TEST_F(NotificationBus, EachPosterOwnsANameBeforeItsFirstSignalLeaves)
{
    std::vector<std::pair<std::string, std::string>> changes;
    const auto owners = listenerBus->subscribe(
        { "org.freedesktop.DBus", {}, {}, "NameOwnerChanged", {} }, [&](const BusSignal& signal) {
            const std::string name = *signal.values[0].text();
            if (name.starts_with("com.vexil"))
                changes.emplace_back(name, *signal.values[2].text());
        });
    const auto signal = listenerBus->subscribe({ {}, path, {}, {}, {} }, [&](const BusSignal& posted) {
        std::string name = "com.vexil.Tandem.Notifications.c" + posted.sender.substr(1);
        name[name.rfind('.')] = '_';
        ASSERT_EQ(changes.size(), heard.size() + 1);
        EXPECT_EQ(changes.back(), std::pair(name, posted.sender));
        heard.push_back(*posted.values[0].text());
    });
    startListening(*listenerBus);
    poster.post("a");
    waitFor(1);
    BusNotifications other(std::make_shared<Bus>(context, daemon.address()));
    other.post("b");
    waitFor(2);
    EXPECT_EQ(heard, (Names { "a", "b" }));
}

TEST_F(NotificationBus, PosterOwnsANameOnEveryConnection)
{
    std::string owner;
    poster.post("a");
    daemon.kill();
    EXPECT_TRUE(comes([&] { return !posterBus->isConnected() && !posterBus->isOpening(); }));
    daemon.start();
    posterBus->reopen();
    EXPECT_TRUE(comes([&] { return posterBus->isConnected(); }));
    std::string name = "com.vexil.Tandem.Notifications.c" + posterBus->ownName().substr(1);
    name[name.rfind('.')] = '_';
    const auto call = posterBus->call(requestToBus("GetNameOwner", Variant::ofTuple({ Variant::ofText(name) })),
        [&](const BusReply& reply) { owner = reply.value("s").text().value_or(reply.error); });
    EXPECT_TRUE(comes([&] { return !owner.empty(); }));
    EXPECT_EQ(owner, posterBus->ownName());
}

TEST_F(NotificationBus, WhatWasPostedBeforeTheBusWasThereLeavesWithTheProcess)
{
    listener.addObserverOfAll(hear);
    startListening(*listenerBus);
    {
        const auto ownContext = std::make_shared<BusContext>();
        BusNotifications ending(std::make_shared<Bus>(ownContext, daemon.address()));
        ending.post("a");
        ending.post("b");
        ending.flush();
    }
    waitFor(2);
    EXPECT_EQ(heard, (Names { "a", "b" }));
}

TEST_F(NotificationBus, BusThatHangsAtTheEndGetsThemAllTheSame)
{
    listener.addObserverOfAll(hear);
    startListening(*listenerBus);
    startListening(*posterBus);
    daemon.hang();
    poster.post("a");
    poster.flush();
    daemon.wake();
    waitFor(1);
    EXPECT_EQ(heard, Names { "a" });
}

TEST(Notifications, WithoutABusNothingHappens)
{
    BusNotifications notifications(std::make_shared<Bus>(std::make_shared<BusContext>(), ""));
    notifications.addObserver("a", nullptr);
    notifications.addObserverOfAll(nullptr);
    notifications.post("a");
    notifications.flush();
}

TEST(Notifications, BusThatHangsIsWaitedForAsLongAsItMayTakeToOpenAndNoLonger)
{
    const SilentBus silent;
    const auto bus = std::make_shared<Bus>(std::make_shared<BusContext>(), silent.address());
    BusNotifications notifications(bus);
    notifications.post("a");
    notifications.flush();
    EXPECT_GE(BusContext::Clock::now(), bus->openingEnd());
    const auto start = BusContext::Clock::now();
    notifications.post("b");
    notifications.flush();
    EXPECT_LT(BusContext::Clock::now() - start, std::chrono::milliseconds(200));
}

TEST_F(NotificationBus, BusThatComesLaterIsUsedInALaterTurnForWhatWasAskedBefore)
{
    daemon.kill();
    listener.addObserver("a", hear);
    listener.addObserverOfAll(hear);
    EXPECT_TRUE(comes([&] { return !listenerBus->isOpening(); }));
    daemon.start();
    listener.post("lost");
    listenerBus->reopen();
    listener.post("a");
    waitFor(2);
    EXPECT_EQ(heard, (Names { "a", "a" }));
}

} // namespace
