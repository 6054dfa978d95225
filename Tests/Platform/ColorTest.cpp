#include "UIKit/UIColor.h"

#include <gtest/gtest.h>

namespace {

TEST(Colors, OfThePlatformHaveTheirExactComponents)
{
    EXPECT_EQ(UIColor::whiteColor(), (UIColor { 1, 1, 1, 1 }));
    EXPECT_EQ(UIColor::blackColor(), (UIColor { 0, 0, 0, 1 }));
    EXPECT_EQ(UIColor::clearColor(), (UIColor { 0, 0, 0, 0 }));
    EXPECT_EQ(UIColor::lightGrayColor(), (UIColor { 0.66666669F, 0.66666669F, 0.66666669F, 1 }));
    EXPECT_EQ(UIColor::darkGrayColor(), (UIColor { 0.33333334F, 0.33333334F, 0.33333334F, 1 }));
}

TEST(Colors, AreComputedInSinglePrecision)
{
    constexpr UIColor accent { 28 / 255.0F, 77 / 255.0F, 170 / 255.0F, 1 };
    EXPECT_EQ(accent, (UIColor { 0.10980392F, 0.30196080F, 0.66666669F, 1 }));
}

TEST(Colors, WithAnotherAlphaKeepTheirOtherComponents)
{
    constexpr UIColor color { 0.25F, 0.5F, 0.75F, 1 };
    EXPECT_EQ(color.colorWithAlphaComponent(0.5F), (UIColor { 0.25F, 0.5F, 0.75F, 0.5F }));
    EXPECT_EQ(color.colorWithAlphaComponent(0).colorWithAlphaComponent(1), color);
    EXPECT_EQ(color.alpha, 1);
}

TEST(Colors, DifferInAnyComponent)
{
    constexpr UIColor color { 0.25F, 0.5F, 0.75F, 1 };
    for (const UIColor& other : { UIColor { 0, 0.5F, 0.75F, 1 }, UIColor { 0.25F, 0, 0.75F, 1 },
             UIColor { 0.25F, 0.5F, 0, 1 }, UIColor { 0.25F, 0.5F, 0.75F, 0 } })
        EXPECT_FALSE(color == other);
}

TEST(Colors, LeaveASelectorAsFourReals)
{
    const Value value = UIColor { 0.25F, 0.5F, 0.1F, 1 };
    EXPECT_EQ(value, Value(Array { 0.25, 0.5, double { 0.1F }, 1.0 }));
}

} // namespace
