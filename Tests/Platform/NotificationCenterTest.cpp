#include "Foundation/NSNotificationCenter.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using Strings = std::vector<std::string>;

/// Writes down what it is told, and then does what the test wants.
class Observer final : public NSObject {
    NS_CLASS(Observer, NSObject)
public:
    Observer() = default;
    Observer(std::string name, Strings* heard)
        : _name(std::move(name))
        , _heard(heard)
    {
    }

    void settingsChanged(const std::shared_ptr<NSNotification>& notification)
    {
        _heard->push_back(_name + " " + (notification ? notification->name() : "nothing"));
        last = notification;
        if (onNotification)
            onNotification();
    }
    void otherSelector() { _heard->push_back(_name + " other"); }

    std::function<void()> onNotification;
    std::shared_ptr<NSNotification> last;

private:
    std::string _name;
    Strings* _heard = nullptr;
};

NS_IMPLEMENTATION(Observer, NS_METHOD(settingsChanged), NS_METHOD(otherSelector))

class NotificationCenter : public ::testing::Test {
protected:
    std::shared_ptr<Observer> addObserver(const std::string& name)
    {
        auto observer = std::make_shared<Observer>(name, &heard);
        center->addObserver_selector_name(observer, "settingsChanged:", "changed");
        return observer;
    }
    /// What is heard of one posting.
    Strings post(const std::string& name = "changed")
    {
        heard.clear();
        center->postNotificationName(name);
        return heard;
    }

    Strings heard;
    const std::shared_ptr<NSNotificationCenter> center = std::make_shared<NSNotificationCenter>();
};

TEST_F(NotificationCenter, TellsObserversInTheOrderOfTheirRegistration)
{
    const auto b = addObserver("b");
    const auto a = addObserver("a");
    EXPECT_EQ(post(), (Strings { "b changed", "a changed" }));
}

TEST_F(NotificationCenter, TellsAnObserverAsOftenAsItRegistered)
{
    const auto a = addObserver("a");
    center->addObserver_selector_name(a, "otherSelector", "changed");
    center->addObserver_selector_name(a, "settingsChanged:", "changed");
    EXPECT_EQ(post(), (Strings { "a changed", "a other", "a changed" }));
}

TEST_F(NotificationCenter, TellsNobodyOfAnotherName)
{
    const auto a = addObserver("a");
    for (const char* name : { "", "Changed", "changed ", "com.vexil.changed" })
        EXPECT_EQ(post(name), Strings {}) << name;
}

TEST_F(NotificationCenter, HandsOverTheSenderAndWhatComesWithIt)
{
    const auto a = addObserver("a");
    center->postNotificationName("changed", "sender", Dictionary { { "key", 1 } });
    EXPECT_EQ(a->last->object(), Value("sender"));
    EXPECT_EQ(a->last->userInfo(), Value(Dictionary { { "key", 1 } }));
    post();
    EXPECT_EQ(a->last->object(), Value());
    EXPECT_EQ(a->last->userInfo(), Value());
}

TEST_F(NotificationCenter, AnObserverThatIsGoneHearsNothingAndIsNotKept)
{
    auto a = addObserver("a");
    const auto b = addObserver("b");
    const std::weak_ptr<Observer> watched = a;
    a.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(post(), Strings { "b changed" });
}

TEST_F(NotificationCenter, ARemovedObserverHearsNothing)
{
    const auto a = addObserver("a");
    const auto b = addObserver("b");
    center->addObserver_selector_name(a, "otherSelector", "changed");
    center->removeObserver(*a);
    EXPECT_EQ(post(), Strings { "b changed" });
    center->removeObserver(*a);
    EXPECT_EQ(post(), Strings { "b changed" });
}

TEST_F(NotificationCenter, AnObserverMayRemoveItselfWhileItIsTold)
{
    const auto a = addObserver("a");
    const auto b = addObserver("b");
    a->onNotification = [&] { center->removeObserver(*a); };
    EXPECT_EQ(post(), (Strings { "a changed", "b changed" }));
    EXPECT_EQ(post(), Strings { "b changed" });
}

TEST_F(NotificationCenter, AnObserverThatAnotherOneRemovesHearsNothingMore)
{
    const auto a = addObserver("a");
    const auto b = addObserver("b");
    const auto c = addObserver("c");
    a->onNotification = [&] { center->removeObserver(*b); };
    EXPECT_EQ(post(), (Strings { "a changed", "c changed" }));
}

TEST_F(NotificationCenter, AnObserverThatAnotherOneDestroysHearsNothingMore)
{
    const auto a = addObserver("a");
    auto b = addObserver("b");
    const auto c = addObserver("c");
    a->onNotification = [&] { b.reset(); };
    EXPECT_EQ(post(), (Strings { "a changed", "c changed" }));
}

TEST_F(NotificationCenter, AnObserverMayLetGoOfItselfWhileItIsTold)
{
    auto a = addObserver("a");
    const std::weak_ptr<Observer> watched = a;
    a->onNotification = [&] { a.reset(); };
    EXPECT_EQ(post(), Strings { "a changed" });
    EXPECT_TRUE(watched.expired());
}

TEST_F(NotificationCenter, AnObserverAddedMeanwhileHearsTheNextOne)
{
    std::vector<std::shared_ptr<Observer>> added;
    const auto a = addObserver("a");
    a->onNotification = [&] {
        for (int i = 0; i < 100; ++i)
            added.push_back(addObserver("new"));
        a->onNotification = nullptr;
    };
    EXPECT_EQ(post(), Strings { "a changed" });
    EXPECT_EQ(post().size(), 101U);
}

TEST_F(NotificationCenter, PostingWhileTellingTellsTheInnerOneFirst)
{
    const auto a = addObserver("a");
    const auto b = addObserver("b");
    center->addObserver_selector_name(b, "settingsChanged:", "inner");
    a->onNotification = [&] { center->postNotificationName("inner"); };
    EXPECT_EQ(post(), (Strings { "a changed", "b inner", "b changed" }));
}

TEST_F(NotificationCenter, ASelectorThatTheObserverDoesNotHaveIsPassedOver)
{
    const auto a = std::make_shared<Observer>("a", &heard);
    center->addObserver_selector_name(a, "noSuchSelector:", "changed");
    center->addObserver_selector_name(a, "", "changed");
    const auto b = addObserver("b");
    EXPECT_EQ(post(), Strings { "b changed" });
}

TEST_F(NotificationCenter, NoObserverIsNoneToTell)
{
    center->addObserver_selector_name(nullptr, "settingsChanged:", "changed");
    EXPECT_EQ(post(), Strings {});
}

TEST_F(NotificationCenter, IsOneForTheProcess)
{
    EXPECT_EQ(&NSNotificationCenter::defaultCenter(), &NSNotificationCenter::defaultCenter());
}

} // namespace
