#include "Linux/BusTalks.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <stdexcept>

namespace {

using Milliseconds = WaitBudget::Milliseconds;

constexpr const char* bus = "org.freedesktop.DBus";
constexpr const char* nobody = "org.example.Nobody";
constexpr int answer = 42;

/// A turn whose daemons have little time left, so that nothing waits for long.
class Talks : public testing::Test {
protected:
    Talks() { budget->spend(WaitBudget::whole - Milliseconds(10)); }

    static QDBusMessage greetingOf(const char* daemon)
    {
        return QDBusMessage::createMethodCall(QLatin1String(daemon), QStringLiteral("/"),
            QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    }

    const std::shared_ptr<WaitBudget> budget = std::make_shared<WaitBudget>();
    BusTalks talks { { QDBusConnection(QStringLiteral("none")), budget } };
};

TEST_F(Talks, ComeToWhatTheyReturn)
{
    budget->renew();
    auto talk = talks.begin(bus, [](const BusCaller&) { return answer; });
    EXPECT_EQ(talk.result(), answer);
    EXPECT_FALSE(budget->hasFailed(bus));
}

TEST_F(Talks, OneThatHangsComesToNothingAndIsNotHadAgainInTheTurn)
{
    auto released = std::make_shared<std::latch>(1);
    auto hangs = [released](const BusCaller&) {
        released->wait();
        return answer;
    };
    EXPECT_EQ(talks.begin(bus, hangs).result(), 0);
    EXPECT_TRUE(budget->hasFailed(bus));
    EXPECT_LT(budget->patience(), Milliseconds(8));
    EXPECT_EQ(talks.begin(bus, hangs).result(), 0);
    released->count_down();
    // It may take a moment to its end.
    do
        budget->renew();
    while (talks.begin(bus, hangs).result() != answer);
}

TEST_F(Talks, DaemonThatHangsOverATalkThatWasDroppedIsLeftAloneAndTakesNoThreadOfTheOthers)
{
    constexpr int turns = 30;
    auto released = std::make_shared<std::latch>(1);
    auto begun = std::make_shared<std::atomic<int>>(0);
    for (int i = 0; i < turns; ++i) {
        budget->renew();
        auto dropped = talks.begin(nobody, [released, begun](const BusCaller&) {
            ++*begun;
            released->wait();
            return answer;
        });
        EXPECT_EQ(talks.begin(bus, [](const BusCaller&) { return answer; }).result(), answer);
        if (i > 0) {
            EXPECT_EQ(dropped.result(), 0);
            EXPECT_TRUE(budget->hasFailed(nobody));
        }
    }
    EXPECT_LE(*begun, 1);
    released->count_down();
}

TEST_F(Talks, OneThatThrowsComesToNothing)
{
    const auto throws = [](const BusCaller&) -> int { throw std::runtime_error("no memory"); };
    budget->renew();
    EXPECT_EQ(talks.begin(bus, throws).result(), 0);
    EXPECT_TRUE(budget->hasFailed(bus));
    budget->renew();
    EXPECT_EQ(talks.begin(bus, [](const BusCaller&) { return answer; }).result(), answer);
}

TEST_F(Talks, OneThatHangsKeepsNoOtherFromComingToItsEnd)
{
    budget->renew();
    auto released = std::make_shared<std::latch>(1);
    auto hangs = talks.begin(nobody, [released](const BusCaller&) {
        released->wait();
        return answer;
    });
    auto other = talks.begin(bus, [released](const BusCaller&) {
        released->count_down();
        return answer;
    });
    EXPECT_EQ(hangs.result(), answer);
    EXPECT_EQ(other.result(), answer);
}

TEST_F(Talks, OneThatIsDroppedIsNotWaitedFor)
{
    auto released = std::make_shared<std::latch>(1);
    {
        const auto dropped = talks.begin(bus, [released](const BusCaller&) {
            released->wait();
            return answer;
        });
    }
    released->count_down();
}

TEST_F(Talks, OneOfAnEarlierTurnIsKnown)
{
    const auto talk = talks.begin(bus, [](const BusCaller&) { return answer; });
    EXPECT_TRUE(talk.isOfThisTurn());
    budget->renew();
    EXPECT_FALSE(talk.isOfThisTurn());
}

TEST_F(Talks, DaemonThatIsAbsentHasFailed)
{
    PrivateBus machine;
    budget->renew();
    BusTalks onBus({ machine.client(QStringLiteral("a")), budget });
    const auto greet = [](const char* daemon) {
        return [daemon](const BusCaller& caller) { return caller.call(greetingOf(daemon)).type(); };
    };
    EXPECT_EQ(onBus.begin(bus, greet(bus)).result(), QDBusMessage::ReplyMessage);
    EXPECT_FALSE(budget->hasFailed(bus));
    EXPECT_EQ(onBus.begin(nobody, greet(nobody)).result(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(budget->hasFailed(nobody));
    EXPECT_EQ(onBus.begin(nobody, greet(nobody)).result(), QDBusMessage::InvalidMessage);
}

TEST_F(Talks, BusIsConnectedToByTheFirstOfThemAndAgainInALaterTurnWhenItIsNotThere)
{
    int connections = 0;
    budget->renew();
    BusTalks onDemand({ [&connections] {
                           ++connections;
                           return QDBusConnection(QStringLiteral("none"));
                       },
        budget });
    EXPECT_EQ(connections, 0);
    for (int i = 0; i < 2; ++i) {
        const auto greet = [](const BusCaller& caller) { return caller.call(greetingOf(bus)).type(); };
        EXPECT_EQ(onDemand.begin(bus, greet).result(), QDBusMessage::ErrorMessage);
    }
    EXPECT_EQ(connections, 1);
    budget->renew();
    onDemand.begin(bus, [](const BusCaller& caller) { return caller.isConnected(); }).result();
    EXPECT_EQ(connections, 2);
}

TEST_F(Talks, BusThatIsThereIsConnectedToOnce)
{
    PrivateBus machine;
    int connections = 0;
    BusTalks onDemand({ [&connections, bus = machine.client(QStringLiteral("a"))] {
                           ++connections;
                           return bus;
                       },
        budget });
    for (int i = 0; i < 2; ++i) {
        budget->renew();
        EXPECT_TRUE(onDemand.begin(bus, [](const BusCaller& caller) { return caller.isConnected(); }).result());
    }
    EXPECT_EQ(connections, 1);
}

TEST(WaitBudgets, AreSpentOnceAndRenewed)
{
    WaitBudget budget;
    const unsigned turn = budget.turn();
    budget.spend(WaitBudget::whole - std::chrono::milliseconds(10));
    EXPECT_EQ(budget.patience().count(), 8);
    budget.spend(std::chrono::microseconds(1));
    EXPECT_EQ(budget.patience().count(), 7);
    budget.spend(std::chrono::milliseconds(50));
    EXPECT_EQ(budget.patience().count(), 0);
    budget.noteFailureOf("a");
    EXPECT_TRUE(budget.hasFailed("a"));
    budget.renew();
    EXPECT_EQ(budget.patience(), WaitBudget::whole * 4 / 5);
    EXPECT_FALSE(budget.hasFailed("a"));
    EXPECT_NE(budget.turn(), turn);
}

TEST(WaitBudgets, ATalkIsWaitedForALittleLongerThanItsQuestionsAndNoLongerThanThereIsTime)
{
    WaitBudget budget;
    EXPECT_GT(budget.patienceWithTalk(), budget.patience());
    EXPECT_LT(budget.patienceWithTalk(), WaitBudget::whole);
    budget.spend(WaitBudget::whole - std::chrono::milliseconds(10));
    EXPECT_LE(budget.patienceWithTalk(), std::chrono::milliseconds(10));
}

TEST(WaitBudgets, OfATalkIsWhatOneQuestionMayTake)
{
    WaitBudget budget;
    budget.noteFailureOf("a");
    WaitBudget talk = budget.forTalk();
    EXPECT_EQ(talk.patience(), budget.patience());
    EXPECT_TRUE(talk.hasFailed("a"));
    talk.spend(std::chrono::milliseconds(60));
    EXPECT_EQ(talk.patience(), budget.patience() - std::chrono::milliseconds(60));
}

} // namespace
