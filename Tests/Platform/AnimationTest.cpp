#include "UIKit/UIView.h"
#include "UIKit/UIViewAnimation.h"

#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

namespace {

/// Animations on a clock that the test moves.
class Animations : public ::testing::Test {
protected:
    Animations()
    {
        animations.setClock([this] { return time; });
        animations.setObserver([this](const UIViewAnimation& animation) { began.push_back(animation); });
    }
    ~Animations() override
    {
        animations.setClock(nullptr);
        animations.setObserver(nullptr);
    }

    void fade(const std::shared_ptr<UIView>& view, float alpha, double seconds)
    {
        UIView::animateWithDuration_animations(seconds, [&] { view->setAlpha(alpha); });
    }
    float shown() { return animations.presentedAlpha(*view); }

    UIViewAnimations& animations = UIViewAnimations::shared();
    double time = 100;
    std::vector<UIViewAnimation> began;
    const std::shared_ptr<UIView> view = std::make_shared<UIView>();
};

TEST_F(Animations, ChangeTheValueAtOnceAndShowItOverTheDuration)
{
    view->setAlpha(0);
    fade(view, 1, 1);
    EXPECT_EQ(view->alpha(), 1);
    EXPECT_EQ(shown(), 0);
    time = 100.25;
    EXPECT_FLOAT_EQ(shown(), 0.15625F);
    time = 100.5;
    EXPECT_FLOAT_EQ(shown(), 0.5F);
    time = 100.75;
    EXPECT_FLOAT_EQ(shown(), 0.84375F);
    EXPECT_TRUE(animations.isRunning());
    time = 101;
    EXPECT_EQ(shown(), 1);
    EXPECT_FALSE(animations.isRunning());
}

TEST_F(Animations, TellTheirObserverWhenTheyBegin)
{
    view->setAlpha(0);
    fade(view, 0.5F, 2);
    ASSERT_EQ(began.size(), 1U);
    EXPECT_EQ(began[0].view.lock(), view);
    EXPECT_EQ(began[0].from, 0);
    EXPECT_EQ(began[0].to, 0.5F);
    EXPECT_EQ(began[0].begin, 100);
    EXPECT_EQ(began[0].duration, 2);
}

TEST_F(Animations, DoNotBeginOutsideOfABlock)
{
    view->setAlpha(0.5F);
    EXPECT_TRUE(began.empty());
    EXPECT_EQ(shown(), 0.5F);
    EXPECT_FALSE(animations.isRunning());
}

TEST_F(Animations, DoNotBeginWhereNothingChanges)
{
    fade(view, 1, 1);
    UIView::animateWithDuration_animations(1, [] {});
    UIView::animateWithDuration_animations(1, nullptr);
    EXPECT_TRUE(began.empty());
}

TEST_F(Animations, WithoutADurationChangeAtOnce)
{
    for (const double seconds : { 0.0, -1.0, std::numeric_limits<double>::quiet_NaN() }) {
        view->setAlpha(0);
        fade(view, 1, seconds);
        EXPECT_EQ(shown(), 1) << seconds;
    }
    EXPECT_FALSE(animations.isRunning());
}

TEST_F(Animations, EndWhenTheValueIsSetOutsideOfABlock)
{
    view->setAlpha(0);
    fade(view, 1, 1);
    time = 100.5;
    view->setAlpha(0.25F);
    EXPECT_EQ(shown(), 0.25F);
    EXPECT_FALSE(animations.isRunning());
}

TEST_F(Animations, AreReplacedByALaterOneOfTheSameView)
{
    view->setAlpha(0);
    fade(view, 1, 1);
    time = 100.5;
    fade(view, 0, 1);
    EXPECT_EQ(shown(), 1);
    time = 101;
    EXPECT_FLOAT_EQ(shown(), 0.5F);
    time = 101.5;
    EXPECT_EQ(shown(), 0);
}

TEST_F(Animations, OfSeveralViewsRunBesideEachOther)
{
    const auto other = std::make_shared<UIView>();
    UIView::animateWithDuration_animations(2, [&] {
        view->setAlpha(0);
        UIView::animateWithDuration_animations(1, [&] { other->setAlpha(0); });
    });
    time = 101;
    EXPECT_FLOAT_EQ(shown(), 0.5F);
    EXPECT_EQ(animations.presentedAlpha(*other), 0);
}

TEST_F(Animations, TakeUpTheOuterDurationAfterAnInnerBlock)
{
    UIView::animateWithDuration_animations(2, [&] {
        UIView::animateWithDuration_animations(1, [] {});
        view->setAlpha(0);
    });
    ASSERT_EQ(began.size(), 1U);
    EXPECT_EQ(began[0].duration, 2);
}

TEST_F(Animations, DoNotKeepAViewAlive)
{
    auto gone = std::make_shared<UIView>();
    fade(gone, 0, 1);
    EXPECT_TRUE(animations.isRunning());
    gone.reset();
    EXPECT_FALSE(animations.isRunning());
    EXPECT_EQ(shown(), 1);
}

TEST_F(Animations, BeforeTheirBeginningShowTheOldValueThoughTheClockWentBack)
{
    fade(view, 0, 1);
    time = 50;
    EXPECT_EQ(shown(), 1);
}

TEST_F(Animations, ABlockThatRaisesLeavesLaterChangesUnanimated)
{
    EXPECT_THROW(
        UIView::animateWithDuration_animations(1, [] { throw std::out_of_range("no such row"); }), std::out_of_range);
    view->setAlpha(0);
    EXPECT_TRUE(began.empty());
    EXPECT_EQ(shown(), 0);
}

TEST_F(Animations, AreForgottenWithTheClockThatTheyRanOn)
{
    fade(view, 0, 1);
    animations.setClock([] { return 0.0; });
    EXPECT_FALSE(animations.isRunning());
    EXPECT_EQ(shown(), 0);
}

TEST_F(Animations, RunWithoutAnObserverAndOnTheSystemsClock)
{
    animations.setObserver(nullptr);
    animations.setClock(nullptr);
    fade(view, 0, 1000);
    EXPECT_TRUE(animations.isRunning());
    EXPECT_GT(shown(), 0.9F);
}

} // namespace
