#include "UIKit/UIView.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using View = std::shared_ptr<UIView>;

/// Writes down when it is laid out, and then does what the test wants.
class LaidOutView final : public UIView {
    NS_CLASS(LaidOutView, UIView)
public:
    void layoutSubviews() override
    {
        UIView::layoutSubviews();
        if (order)
            order->push_back(tag());
        if (onLayout)
            onLayout();
    }
    std::vector<long>* order = nullptr;
    std::function<void()> onLayout;
};

NS_IMPLEMENTATION(LaidOutView)

View viewOf(long tag, const std::vector<View>& subviews = {})
{
    auto view = std::make_shared<UIView>();
    view->setTag(tag);
    for (const View& subview : subviews)
        view->addSubview(subview);
    return view;
}

std::vector<long> tagsOf(const std::vector<View>& views)
{
    std::vector<long> tags;
    for (const View& view : views)
        tags.push_back(view->tag());
    return tags;
}

TEST(Rectangles, MoveAndEndWhereTheyShould)
{
    const CGRect rect { 1, 2, 3, 4 };
    EXPECT_EQ(rect.offsetBy(10, -20), (CGRect { 11, -18, 3, 4 }));
    EXPECT_EQ(rect.maxX(), 4);
    EXPECT_EQ(rect.maxY(), 6);
}

TEST(Views, BeginVisibleEmptyAndOpenToTheUser)
{
    const UIView view;
    EXPECT_EQ(view.frame(), CGRect());
    EXPECT_EQ(view.tag(), 0);
    EXPECT_EQ(view.alpha(), 1);
    EXPECT_FALSE(view.isHidden());
    EXPECT_FALSE(view.clipsToBounds());
    EXPECT_TRUE(view.isUserInteractionEnabled());
    EXPECT_EQ(view.backgroundColor(), std::nullopt);
    EXPECT_EQ(view.tintColor(), std::nullopt);
    EXPECT_EQ(view.layer().cornerRadius, 0);
    EXPECT_EQ(view.superview(), nullptr);
    EXPECT_TRUE(view.subviews().empty());
}

TEST(Views, HaveBoundsOfTheirSizeAtTheOrigin)
{
    UIView view;
    view.setFrame({ 10, 20, 30, 40 });
    EXPECT_EQ(view.bounds(), (CGRect { 0, 0, 30, 40 }));
}

TEST(Tags, FindTheViewItselfThenTheFirstBelowDepthFirst)
{
    const View deep = viewOf(7);
    const View shallow = viewOf(7);
    const View root = viewOf(1, { viewOf(2, { viewOf(3, { deep }) }), shallow });
    EXPECT_EQ(root->viewWithTag(1), root);
    EXPECT_EQ(root->viewWithTag(7), deep);
    deep->removeFromSuperview();
    EXPECT_EQ(root->viewWithTag(7), shallow);
}

TEST(Tags, ThatNoViewBelowHasFindNothing)
{
    const View inner = viewOf(2);
    const View root = viewOf(1, { inner });
    EXPECT_EQ(root->viewWithTag(9), nullptr);
    EXPECT_EQ(root->viewWithTag(-1), nullptr);
    EXPECT_EQ(inner->viewWithTag(1), nullptr);
    EXPECT_EQ(root->viewWithTag(0), nullptr);
    EXPECT_EQ(viewOf(0)->viewWithTag(0)->tag(), 0);
}

TEST(Subviews, StandInTheOrderInWhichTheyWereAdded)
{
    const View root = viewOf(0, { viewOf(3), viewOf(1), viewOf(2) });
    EXPECT_EQ(tagsOf(root->subviews()), (std::vector<long> { 3, 1, 2 }));
    for (const View& view : root->subviews())
        EXPECT_EQ(view->superview(), root);
}

TEST(Subviews, AddedAgainComeToTheFront)
{
    const View first = viewOf(1);
    const View root = viewOf(0, { first, viewOf(2) });
    root->addSubview(first);
    EXPECT_EQ(tagsOf(root->subviews()), (std::vector<long> { 2, 1 }));
}

TEST(Subviews, HaveOneSuperview)
{
    const View view = viewOf(1);
    const View before = viewOf(10, { view });
    const View after = viewOf(20, { view });
    EXPECT_TRUE(before->subviews().empty());
    EXPECT_EQ(view->superview(), after);
}

TEST(Subviews, CanBeRemovedOnceAndAreNotMissedTwice)
{
    const View view = viewOf(1);
    const View root = viewOf(0, { view, viewOf(2) });
    view->removeFromSuperview();
    view->removeFromSuperview();
    EXPECT_EQ(tagsOf(root->subviews()), std::vector<long> { 2 });
    EXPECT_EQ(view->superview(), nullptr);
}

TEST(Subviews, OfNothingOrOfThemselvesAreNotAdded)
{
    const View view = viewOf(1);
    view->addSubview(nullptr);
    view->addSubview(view);
    EXPECT_TRUE(view->subviews().empty());
    EXPECT_EQ(view->superview(), nullptr);
}

TEST(Subviews, CannotHoldAViewThatHoldsThem)
{
    const View inner = viewOf(3);
    const View middle = viewOf(2, { inner });
    const View root = viewOf(1, { middle });
    inner->addSubview(root);
    inner->addSubview(middle);
    EXPECT_TRUE(inner->subviews().empty());
    EXPECT_EQ(root->superview(), nullptr);
    EXPECT_EQ(middle->superview(), root);
    root->layoutIfNeeded();
    EXPECT_EQ(root->viewWithTag(9), nullptr);
}

TEST(Subviews, LiveAsLongAsTheirSuperviewAndDoNotKeepIt)
{
    View root = viewOf(1, { viewOf(2, { viewOf(3) }) });
    const std::weak_ptr<UIView> weakRoot = root;
    const View inner = root->viewWithTag(3);
    const std::weak_ptr<UIView> weakMiddle = inner->superview();
    root.reset();
    EXPECT_TRUE(weakRoot.expired());
    EXPECT_TRUE(weakMiddle.expired());
    EXPECT_EQ(inner->superview(), nullptr);
    inner->removeFromSuperview();
}

TEST(Subviews, ThatNobodyElseHoldsAreGoneWhenTheyAreRemoved)
{
    const View root = viewOf(1, { viewOf(2) });
    const std::weak_ptr<UIView> watched = root->subviews()[0];
    watched.lock()->removeFromSuperview();
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(root->subviews().empty());
}

class Layout : public ::testing::Test {
protected:
    std::shared_ptr<LaidOutView> laidOut(long tag)
    {
        auto view = std::make_shared<LaidOutView>();
        view->setTag(tag);
        view->order = &order;
        return view;
    }
    std::vector<long> order;
};

TEST_F(Layout, GoesFromTheOutsideInAndFromBackToFront)
{
    const auto root = laidOut(1);
    const auto middle = laidOut(2);
    root->addSubview(middle);
    middle->addSubview(laidOut(3));
    root->addSubview(laidOut(4));
    root->layoutIfNeeded();
    EXPECT_EQ(order, (std::vector<long> { 1, 2, 3, 4 }));
}

TEST_F(Layout, ReachesSubviewsThatItAdds)
{
    const auto root = laidOut(1);
    root->onLayout = [&] {
        if (root->subviews().empty())
            root->addSubview(laidOut(2));
    };
    root->layoutIfNeeded();
    EXPECT_EQ(order, (std::vector<long> { 1, 2 }));
}

TEST_F(Layout, SurvivesAViewThatTakesItselfAwayWhileItIsLaidOut)
{
    const auto root = laidOut(1);
    for (long tag = 2; tag <= 4; ++tag) {
        const auto view = laidOut(tag);
        view->onLayout = [weak = std::weak_ptr<UIView>(view)] { weak.lock()->removeFromSuperview(); };
        root->addSubview(view);
    }
    root->layoutIfNeeded();
    EXPECT_EQ(order, (std::vector<long> { 1, 2, 3, 4 }));
    EXPECT_TRUE(root->subviews().empty());
}

TEST_F(Layout, SurvivesAViewThatAddsManyBesideItself)
{
    const auto root = laidOut(1);
    const auto view = laidOut(2);
    view->onLayout = [&] {
        for (int i = 0; i < 100; ++i)
            root->addSubview(viewOf(0));
    };
    root->addSubview(view);
    root->addSubview(laidOut(3));
    root->layoutIfNeeded();
    EXPECT_EQ(order, (std::vector<long> { 1, 2, 3 }));
    EXPECT_EQ(root->subviews().size(), 102U);
}

TEST(Views, AsDeepAsAScreenMayBeAreLaidOutSearchedAndDestroyed)
{
    const View root = viewOf(1);
    View innermost = root;
    for (int i = 0; i < 1000; ++i) {
        const View view = viewOf(2);
        innermost->addSubview(view);
        innermost = view;
    }
    innermost->setTag(3);
    root->layoutIfNeeded();
    EXPECT_EQ(root->viewWithTag(3), innermost);
}

} // namespace
