#include "Bus/TestBus.h"

#include <gtest/gtest.h>

#include <array>
#include <unistd.h>

namespace {

constexpr std::chrono::minutes patience { 1 };

class BusSending : public testing::Test {
protected:
    bool comes(const std::function<bool()>& isSo) { return comesTrue(*context, isSo); }

    const std::shared_ptr<BusContext> context = std::make_shared<BusContext>();
};

TEST_F(BusSending, ConnectionKnowsTheNameThatTheBusGaveIt)
{
    TestBus daemon;
    Bus bus(context, daemon.address());
    EXPECT_EQ(bus.ownName(), "");
    std::string sender;
    const auto subscription = bus.subscribe(
        { {}, "/org/example", {}, {}, {} }, [&sender](const BusSignal& signal) { sender = signal.sender; });
    bus.sendSignal("/org/example", "org.example.Interface", "Said", Variant::ofTuple({}));
    EXPECT_TRUE(comes([&sender] { return !sender.empty(); }));
    EXPECT_EQ(bus.ownName(), sender);
    daemon.kill();
    EXPECT_TRUE(comes([&bus] { return !bus.isConnected(); }));
    EXPECT_EQ(bus.ownName(), "");
}

TEST_F(BusSending, WhatWasSentHasLeftThoughTheBusHangs)
{
    TestBus daemon;
    Bus listener(context, daemon.address());
    std::vector<std::string> heard;
    const auto subscription = listener.subscribe(
        { {}, "/org/example", {}, {}, {} }, [&heard](const BusSignal& signal) { heard.push_back(signal.member); });
    listener.open();
    auto poster = std::make_unique<Bus>(context, daemon.address());
    poster->open();
    ASSERT_TRUE(comes([&] { return poster->isConnected() && listener.isConnected(); }));
    bool isKnown = false;
    const auto call = listener.call(requestToBus("GetId", {}), [&isKnown](const BusReply&) { isKnown = true; });
    ASSERT_TRUE(comes([&isKnown] { return isKnown; }));
    daemon.hang();
    for (const char* member : { "First", "Last" })
        poster->sendSignal("/org/example", "org.example.Interface", member, Variant::ofTuple({}));
    bool isSent = false;
    const auto sending = poster->whenSent([&isSent] { isSent = true; });
    EXPECT_TRUE(comes([&isSent] { return isSent; }));
    poster.reset();
    daemon.wake();
    EXPECT_TRUE(comes([&heard] { return heard.size() >= 2; }));
    EXPECT_EQ(heard, (std::vector<std::string> { "First", "Last" }));
}

TEST_F(BusSending, WaitingForInputHandlesWhatComesAndDeliversNoNews)
{
    TestBus daemon;
    Bus bus(context, daemon.address());
    std::array<int, 2> ends {};
    ASSERT_EQ(pipe(ends.data()), 0);
    bool isNews = false;
    BusHandle news;
    // The pipe is written to when the bus has answered, which it does while the pipe is waited for.
    const auto call = bus.call(requestToBus("GetId", {}), [&](const BusReply&) {
        news = context->tell([&isNews] { isNews = true; });
        EXPECT_EQ(write(ends[1], "x", 1), 1);
    });
    context->waitUntilReadable(ends[0]);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 1);
    EXPECT_FALSE(isNews);
    context->takeIn();
    EXPECT_TRUE(isNews);
    close(ends[1]);
    context->waitUntilReadable(ends[0]);
    close(ends[0]);
}

TEST_F(BusSending, NextThatComesIsTakenInWithItsNews)
{
    TestBus daemon;
    Bus bus(context, daemon.address());
    bool isNews = false;
    BusHandle news;
    const auto call = bus.call(
        requestToBus("GetId", {}), [&](const BusReply&) { news = context->tell([&isNews] { isNews = true; }); });
    const auto end = BusContext::Clock::now() + patience;
    while (!isNews && BusContext::Clock::now() < end)
        context->takeInNext();
    EXPECT_TRUE(isNews);
}

} // namespace
