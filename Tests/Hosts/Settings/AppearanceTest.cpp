#include "WindowTest.h"

namespace {

/// A system whose wishes the test changes.
class Wishes final : public Appearance {
public:
    bool isDark() const override { return dark; }
    double textScale() const override { return scale; }
    bool isMotionReduced() const override { return still; }

    bool dark = false;
    double scale = 1;
    bool still = false;
};

} // namespace

class AppearanceTest : public WindowTest {
protected:
    void openWindowThatFollows(Theme::Following following)
    {
        auto theme = std::make_unique<Theme>();
        theme->setAnimated(true);
        theme->setFollowing(following);
        openWindowOn(std::move(theme), [this](Phone& phone) { phone.appearance = _wishes; });
    }

    void systemChanges() { host().session().setDarkAppearance(_wishes->dark); }

    std::vector<double> rowHeights()
    {
        std::vector<double> heights;
        for (const PageRowItem* row : items())
            heights.push_back(row->height());
        return heights;
    }

    const std::shared_ptr<Wishes> _wishes = std::make_shared<Wishes>();
};

TEST_F(AppearanceTest, WindowOpensAsTheSystemWants)
{
    _wishes->dark = true;
    _wishes->scale = 1.5;
    _wishes->still = true;
    openWindowThatFollows({ true, true });
    const Theme& theme = *host().theme();
    EXPECT_TRUE(theme.isDark());
    EXPECT_EQ(theme.textScale(), 1.5);
    EXPECT_FALSE(theme.isAnimated());
}

TEST_F(AppearanceTest, OpenWindowFollowsTheSystem)
{
    _wishes->still = true;
    openWindowThatFollows({ true, true });
    const auto usual = rowHeights();
    const QImage light = _window->grabWindow();
    _wishes->dark = true;
    _wishes->scale = 2;
    _wishes->still = false;
    systemChanges();
    settle();
    const Theme& theme = *host().theme();
    EXPECT_TRUE(theme.isDark());
    EXPECT_EQ(theme.textScale(), 2);
    EXPECT_TRUE(theme.isAnimated());
    EXPECT_NE(_window->grabWindow(), light);
    const auto large = rowHeights();
    ASSERT_FALSE(large.empty());
    EXPECT_GT(large.front(), 0);
    EXPECT_NE(large, usual);

    _wishes->dark = false;
    _wishes->scale = 1;
    _wishes->still = true;
    systemChanges();
    settle();
    EXPECT_FALSE(theme.isAnimated());
    EXPECT_EQ(rowHeights(), usual);
    EXPECT_EQ(_window->grabWindow(), light);
}

TEST_F(AppearanceTest, TextSizeOfUnreasonableSystemStaysWithinBounds)
{
    openWindowThatFollows({ true, true });
    for (const double scale : { -1.0, 0.0, 0.5, 1e300, std::numeric_limits<double>::infinity() }) {
        _wishes->scale = scale;
        systemChanges();
        EXPECT_EQ(host().theme()->textScale(), scale > 1 ? 2 : 1) << scale;
    }
}

TEST_F(AppearanceTest, WhatWasChosenForTheWindowStays)
{
    openWindowThatFollows({ false, false });
    _wishes->scale = 2;
    _wishes->still = true;
    systemChanges();
    EXPECT_EQ(host().theme()->textScale(), 1);
    EXPECT_TRUE(host().theme()->isAnimated());
}
