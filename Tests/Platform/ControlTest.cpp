#include "UIKit/UIControl.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace {

using Strings = std::vector<std::string>;

constexpr unsigned tapped = UIControlEventTouchUpInside;
constexpr unsigned changed = UIControlEventValueChanged;
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float none = std::numeric_limits<float>::quiet_NaN();

/// Writes down what it performs, and then does what the test wants.
class Target final : public NSObject {
    NS_CLASS(Target, NSObject)
public:
    Target() = default;
    Target(std::string name, Strings* calls)
        : _name(std::move(name))
        , _calls(calls)
    {
    }
    void controlMoved(const std::shared_ptr<UIControl>& sender)
    {
        _calls->push_back(_name + (sender ? " " + sender->isa().name() : " nobody"));
        if (onAction)
            onAction();
    }
    std::function<void()> onAction;

private:
    std::string _name;
    Strings* _calls = nullptr;
};

NS_IMPLEMENTATION(Target, NS_METHOD(controlMoved))

class Controls : public ::testing::Test {
protected:
    std::shared_ptr<Target> addTarget(const std::string& name, unsigned events = changed)
    {
        auto target = std::make_shared<Target>(name, &calls);
        control->addTarget_action_forControlEvents(target, "controlMoved:", events);
        return target;
    }
    Strings send(unsigned events = changed)
    {
        calls.clear();
        control->sendActionsForControlEvents(events);
        return calls;
    }

    Strings calls;
    std::shared_ptr<UIControl> control = std::make_shared<UISwitch>();
};

TEST_F(Controls, TellTheirTargetsInTheOrderInWhichTheyWereAdded)
{
    const auto b = addTarget("b");
    const auto a = addTarget("a");
    EXPECT_EQ(send(), (Strings { "b UISwitch", "a UISwitch" }));
}

TEST_F(Controls, TellATargetOfTheEventsOfItsMaskAlone)
{
    const auto a = addTarget("a", tapped);
    const auto b = addTarget("b", tapped | changed);
    const auto c = addTarget("c", 0);
    EXPECT_EQ(send(changed), Strings { "b UISwitch" });
    EXPECT_EQ(send(tapped), (Strings { "a UISwitch", "b UISwitch" }));
    EXPECT_EQ(send(tapped | changed), (Strings { "a UISwitch", "b UISwitch" }));
    EXPECT_EQ(send(0), Strings {});
    EXPECT_EQ(send(1U << 31), Strings {});
}

TEST_F(Controls, TellATargetAsOftenAsItWasAdded)
{
    const auto a = addTarget("a");
    control->addTarget_action_forControlEvents(a, "controlMoved:", changed);
    EXPECT_EQ(send(), (Strings { "a UISwitch", "a UISwitch" }));
}

TEST_F(Controls, PassOverTargetsThatAreGoneOrNoneOrDoNotRespond)
{
    auto a = addTarget("a");
    control->addTarget_action_forControlEvents(nullptr, "controlMoved:", changed);
    control->addTarget_action_forControlEvents(a, "noSuchAction:", changed);
    control->addTarget_action_forControlEvents(a, "", changed);
    const auto b = addTarget("b");
    a.reset();
    EXPECT_EQ(send(), Strings { "b UISwitch" });
}

TEST_F(Controls, DoNotKeepTheirTargetsAlive)
{
    auto a = addTarget("a");
    const std::weak_ptr<Target> watched = a;
    a.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(Controls, PassOverATargetThatAnActionDestroys)
{
    const auto a = addTarget("a");
    auto b = addTarget("b");
    const auto c = addTarget("c");
    a->onAction = [&] { b.reset(); };
    EXPECT_EQ(send(), (Strings { "a UISwitch", "c UISwitch" }));
}

TEST_F(Controls, MayBeDestroyedByAnActionOfTheirOwn)
{
    const auto a = addTarget("a");
    const auto b = addTarget("b");
    const std::weak_ptr<UIControl> watched = control;
    a->onAction = [&] { control.reset(); };
    control->sendActionsForControlEvents(changed);
    EXPECT_EQ(calls, (Strings { "a UISwitch", "b UISwitch" }));
    EXPECT_TRUE(watched.expired());
}

TEST_F(Controls, DoNotTellTargetsThatAreAddedMeanwhile)
{
    std::vector<std::shared_ptr<Target>> added;
    const auto a = addTarget("a");
    a->onAction = [&] {
        for (int i = 0; i < 100; ++i)
            added.push_back(addTarget("new"));
        a->onAction = nullptr;
    };
    EXPECT_EQ(send(), Strings { "a UISwitch" });
    EXPECT_EQ(send().size(), 101U);
}

TEST(Switches, HaveASizeOfTheirOwnAndBeginOff)
{
    const UISwitch control;
    EXPECT_EQ(control.frame(), (CGRect { 0, 0, 51, 31 }));
    EXPECT_FALSE(control.isOn());
    EXPECT_TRUE(control.isEnabled());
    EXPECT_EQ(control.onTintColor(), std::nullopt);
}

TEST_F(Controls, SwitchesAndSlidersThatAreSetTellNobody)
{
    const auto a = addTarget("a");
    std::dynamic_pointer_cast<UISwitch>(control)->setOn_animated(true, true);
    EXPECT_TRUE(std::dynamic_pointer_cast<UISwitch>(control)->isOn());
    const auto slider = std::make_shared<UISlider>();
    slider->addTarget_action_forControlEvents(a, "controlMoved:", changed);
    slider->setRange(0, 10);
    slider->setValue(5);
    EXPECT_EQ(calls, Strings {});
}

TEST(Sliders, BeginAtTheStartOfARangeFromZeroToOne)
{
    const UISlider slider;
    EXPECT_EQ(slider.minimumValue(), 0);
    EXPECT_EQ(slider.maximumValue(), 1);
    EXPECT_EQ(slider.value(), 0);
    EXPECT_TRUE(slider.isContinuous());
}

TEST(Sliders, KeepTheirValueWithinTheRange)
{
    UISlider slider;
    slider.setRange(-2, 10);
    const std::pair<float, float> values[] = { { 5, 5 }, { -2, -2 }, { 10, 10 }, { -2.5F, -2 }, { 11, 10 },
        { infinity, 10 }, { -infinity, -2 }, { none, -2 } };
    for (const auto& [set, kept] : values) {
        slider.setValue(set);
        EXPECT_EQ(slider.value(), kept) << set;
    }
    slider.setValue(8);
    slider.setRange(0, 5);
    EXPECT_EQ(slider.value(), 5);
    slider.setRange(6, 7);
    EXPECT_EQ(slider.value(), 6);
}

TEST(Sliders, WithASenselessRangeHaveAnEmptyOne)
{
    for (const auto& [minimum, maximum] : { std::pair(5.0F, 1.0F), { 5, 5 }, { 5, none }, { 5, -infinity } }) {
        const auto slider = std::make_shared<UISlider>();
        slider->setRange(minimum, maximum);
        slider->setValue(3);
        EXPECT_EQ(slider->minimumValue(), 5) << maximum;
        EXPECT_EQ(slider->maximumValue(), 5) << maximum;
        EXPECT_EQ(slider->value(), 5) << maximum;
        slider->release();
        EXPECT_EQ(slider->value(), 5) << maximum;
    }
    UISlider slider;
    slider.setRange(none, 3);
    EXPECT_EQ(slider.minimumValue(), 0);
    EXPECT_EQ(slider.maximumValue(), 3);
}

TEST_F(Controls, SlidersTellWhileTheyMoveAndOnceMoreWhenLetGo)
{
    const auto slider = std::make_shared<UISlider>();
    control = slider;
    const auto a = addTarget("a");
    slider->drag(0.25F);
    slider->drag(0.5F);
    EXPECT_EQ(calls, (Strings { "a UISlider", "a UISlider" }));
    slider->release();
    EXPECT_EQ(calls.size(), 3U);
    EXPECT_EQ(slider->value(), 0.5F);
}

TEST_F(Controls, SlidersThatAreNotContinuousTellOnceWhenLetGo)
{
    const auto slider = std::make_shared<UISlider>();
    control = slider;
    const auto a = addTarget("a");
    slider->setContinuous(false);
    slider->drag(0.25F);
    slider->drag(7);
    EXPECT_EQ(calls, Strings {});
    EXPECT_EQ(slider->value(), 1);
    slider->release();
    EXPECT_EQ(calls, Strings { "a UISlider" });
}

} // namespace
