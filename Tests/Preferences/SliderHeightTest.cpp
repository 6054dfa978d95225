#include "Support/PageTest.h"
#include "TDSliderCell.h"

namespace {

constexpr double width = 375;

/// What is above, between and below the title and the slider of a row.
struct Spaces {
    double above;
    double between;
    double below;
    bool operator==(const Spaces&) const = default;
};

class SliderHeight : public PageTest {
protected:
    static std::shared_ptr<TDSliderCell> cellWithLines(int lines)
    {
        std::string title = "line";
        for (int i = 1; i < lines; ++i)
            title += "\nline";
        const auto cell = std::make_shared<TDSliderCell>();
        EXPECT_TRUE(cell->initWithSpecifier(PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            title, nullptr, "", "", nullptr, PSCellType::Slider, nullptr)));
        cell->setFrame({ 0, 0, width, cell->preferredHeightForWidth(width) });
        cell->layoutIfNeeded();
        return cell;
    }

    static Spaces spacesIn(const TDSliderCell& cell)
    {
        const CGRect& title = cell.textLabel()->frame();
        const CGRect& slider = cell.control()->frame();
        return { title.y, slider.y - title.maxY(), cell.frame().height - slider.maxY() };
    }
};

TEST_F(SliderHeight, GrowsByWhatTheTitleNeedsMoreThanOneLine)
{
    const auto one = cellWithLines(1);
    EXPECT_EQ(one->frame().height, TDSliderCell::defaultCellHeight());
    for (const int lines : { 2, 3, 4, 10 }) {
        const auto cell = cellWithLines(lines);
        const double more = cell->textLabel()->frame().height - one->textLabel()->frame().height;
        EXPECT_GT(more, 0) << lines;
        EXPECT_EQ(cell->frame().height, TDSliderCell::defaultCellHeight() + more) << lines;
    }
}

TEST_F(SliderHeight, LeavesTheSameSpacesHoweverManyLinesTheTitleHas)
{
    const Spaces spaces = spacesIn(*cellWithLines(1));
    EXPECT_EQ(spaces, (Spaces { 9.5, 4, 4.5 }));
    for (const int lines : { 2, 3, 4, 10 })
        EXPECT_EQ(spacesIn(*cellWithLines(lines)), spaces) << lines;
}

TEST_F(SliderHeight, KeepsTitleAndSliderFifteenPointsFromWhereTheBasePutsThem)
{
    for (const int lines : { 1, 2, 3, 10 }) {
        const auto cell = cellWithLines(lines);
        const auto base = std::make_shared<PSSliderTableCell>();
        ASSERT_TRUE(base->initWithSpecifier(cell->specifier()));
        base->textLabel()->setNumberOfLines(0);
        base->setFrame(cell->frame());
        base->layoutIfNeeded();
        EXPECT_EQ(cell->textLabel()->frame(), base->textLabel()->frame().offsetBy(0, -15)) << lines;
        EXPECT_EQ(cell->control()->frame(), base->control()->frame().offsetBy(0, 15)) << lines;
    }
}

} // namespace
