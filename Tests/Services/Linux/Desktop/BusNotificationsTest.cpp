#include "Linux/Desktop/BusNotifications.h"

#include "PrivateBus.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t many = 10'000;

/// Two clients of one bus.
class NotificationBus : public ::testing::Test {
protected:
    /// Takes in what comes until there are so many names.
    static void waitFor(const std::vector<std::string>& names, std::size_t count)
    {
        PrivateBus::waitUntil([&] { return names.size() >= count; });
    }

private:
    PrivateBus _bus;

protected:
    std::unique_ptr<BusNotifications> poster =
        std::make_unique<BusNotifications>(_bus.caller(QStringLiteral("poster")));
    std::unique_ptr<BusNotifications> listener =
        std::make_unique<BusNotifications>(_bus.caller(QStringLiteral("listener")));
};

TEST_F(NotificationBus, TenThousandAreDeliveredInOrderToTheListenerAndToThePoster)
{
    std::vector<std::string> heard;
    std::vector<std::string> heardByPoster;
    std::vector<std::string> expected;
    listener->addObserverOfAll([&](const std::string& name) { heard.push_back(name); });
    poster->addObserverOfAll([&](const std::string& name) { heardByPoster.push_back(name); });
    listener->flush();
    poster->flush();
    for (std::size_t i = 0; i < many; ++i) {
        expected.push_back("n" + std::to_string(i));
        poster->post(expected.back());
    }
    waitFor(heard, many);
    waitFor(heardByPoster, many);
    EXPECT_EQ(heard, expected);
    EXPECT_EQ(heardByPoster, expected);
}

TEST_F(NotificationBus, ObserversHearTheirNameAndNoOther)
{
    std::vector<std::string> heard;
    for (const char* name : { "a", "b", "a", "with 'quotes'" })
        listener->addObserver(name, [&](const std::string& posted) { heard.push_back(posted); });
    listener->flush();
    for (const char* name : { "c", "b", "a", "with 'quotes'", "b" })
        poster->post(name);
    waitFor(heard, 5);
    EXPECT_EQ(heard, (std::vector<std::string> { "b", "a", "a", "with 'quotes'", "b" }));
}

TEST_F(NotificationBus, NameThatEndsWithALineBreakIsAnotherName)
{
    std::vector<std::string> heard;
    listener->addObserver("a\n", [&](const std::string& posted) { heard.push_back(posted); });
    listener->addObserver("end", [&](const std::string& posted) { heard.push_back(posted); });
    listener->flush();
    for (const char* name : { "a", "a\n", "end" })
        poster->post(name);
    waitFor(heard, 2);
    EXPECT_EQ(heard, (std::vector<std::string> { "a\n", "end" }));
}

TEST(Notifications, WithoutABusNothingHappens)
{
    BusNotifications notifications({ QDBusConnection(QStringLiteral("none")), std::make_shared<WaitBudget>() });
    notifications.addObserver("a", nullptr);
    notifications.addObserverOfAll(nullptr);
    notifications.post("a");
    notifications.flush();
    EXPECT_FALSE(notifications.isConnected());
}

TEST(Notifications, BusThatComesLaterIsUsedInALaterTurnForWhatWasAskedBefore)
{
    PrivateBus bus;
    bool isThere = false;
    const auto budget = std::make_shared<WaitBudget>();
    BusNotifications notifications({ [&isThere, client = bus.client(QStringLiteral("late"))] {
                                        return isThere ? client : QDBusConnection(QStringLiteral("none"));
                                    },
        budget });
    std::vector<std::string> heard;
    const auto hear = [&heard](const std::string& name) { heard.push_back(name); };
    notifications.addObserver("a", hear);
    notifications.addObserverOfAll(hear);
    isThere = true;
    notifications.post("lost");
    budget->renew();
    notifications.post("a");
    EXPECT_TRUE(PrivateBus::waitUntil([&heard] { return heard.size() >= 2; }));
    EXPECT_EQ(heard, (std::vector<std::string> { "a", "a" }));
}

} // namespace
