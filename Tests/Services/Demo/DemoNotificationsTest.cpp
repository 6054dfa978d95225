#include "Demo/DemoServices.h"

#include <gtest/gtest.h>

namespace {

class DemoNotificationsOrder : public testing::Test {
protected:
    void observe(const std::string& name, const std::string& observer)
    {
        notifications.addObserver(
            name, [this, observer](const std::string& posted) { lines.push_back(observer + " " + posted); });
    }

    DemoNotifications notifications;
    std::vector<std::string> lines;
};

} // namespace

TEST_F(DemoNotificationsOrder, NobodyObserves)
{
    notifications.post("a");
    EXPECT_TRUE(lines.empty());
}

TEST_F(DemoNotificationsOrder, ObserversOfTheName)
{
    observe("a", "first");
    observe("b", "other");
    observe("a", "second");
    notifications.post("a");
    notifications.post("b");
    notifications.post("A");
    EXPECT_EQ(lines, (std::vector<std::string> { "first a", "second a", "other b" }));
}

TEST_F(DemoNotificationsOrder, EarlierPostsAreNotDeliveredToLaterObservers)
{
    notifications.post("a");
    observe("a", "late");
    EXPECT_TRUE(lines.empty());
}

TEST_F(DemoNotificationsOrder, HandlerPosts)
{
    notifications.addObserver("a", [this](const std::string&) { notifications.post("b"); });
    observe("b", "of b");
    observe("a", "of a");
    notifications.post("a");
    EXPECT_EQ(lines, (std::vector<std::string> { "of a a", "of b b" }));
}

TEST_F(DemoNotificationsOrder, HandlerAddsObservers)
{
    notifications.addObserver("a", [this](const std::string&) {
        for (int i = 0; i < 100; ++i)
            observe("a", "late");
    });
    observe("a", "early");
    notifications.post("a");
    EXPECT_EQ(lines, std::vector<std::string> { "early a" });
}

TEST_F(DemoNotificationsOrder, EmptyHandler)
{
    notifications.addObserver("a", {});
    observe("a", "first");
    notifications.post("a");
    EXPECT_EQ(lines, std::vector<std::string> { "first a" });
}
