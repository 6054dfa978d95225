#include "Support/PageTest.h"
#include "TDBluetoothCell.h"
#include "TDImageCell.h"
#include "TDSliderCell.h"

namespace {

/// Cells of which somebody has taken a part away.
class CellWithoutAPart : public PageTest {
protected:
    static Row row()
    {
        const Row made = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Time", nullptr, "", "", nullptr, PSCellType::Slider, nullptr);
        made->setProperty_forKey("Title", "title");
        return made;
    }

    template <class Cell>
    static std::shared_ptr<Cell> make()
    {
        const auto cell = std::make_shared<Cell>();
        EXPECT_TRUE(cell->initWithSpecifier(row()));
        cell->setFrame({ 0, 0, 375, cell->preferredHeightForWidth(375) });
        cell->layoutIfNeeded();
        return cell;
    }
};

TEST_F(CellWithoutAPart, SliderStillPlacesItsTitle)
{
    const auto whole = make<TDSliderCell>();
    const auto cell = make<TDSliderCell>();
    cell->setControl(nullptr);
    cell->textLabel()->setHidden(true);
    cell->layoutIfNeeded();
    EXPECT_FALSE(cell->textLabel()->isHidden());
    EXPECT_EQ(cell->textLabel()->frame().x, whole->textLabel()->frame().x);
    EXPECT_EQ(cell->textLabel()->frame().width, whole->textLabel()->frame().width);
    EXPECT_EQ(cell->preferredHeightForWidth(375), 70);
}

TEST_F(CellWithoutAPart, SliderTakesANewControlAfterwards)
{
    const auto cell = make<TDSliderCell>();
    const CGRect place = cell->control()->frame();
    cell->setControl(nullptr);
    cell->layoutIfNeeded();
    cell->updateData(row());
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->control()->frame(), place);
}

TEST_F(CellWithoutAPart, PictureOrCaptionLeavesTheOther)
{
    for (const long tag : { 10011L, 10012L }) {
        const auto cell = make<TDImageCell>();
        cell->viewWithTag(tag)->removeFromSuperview();
        const long other = tag == 10011 ? 10012 : 10011;
        cell->viewWithTag(other)->setFrame({});
        cell->layoutIfNeeded();
        EXPECT_EQ(cell->viewWithTag(other)->frame().width, 375);
    }
}

TEST_F(CellWithoutAPart, BannerLaysOutAndUpdatesWhatIsLeft)
{
    const auto cell = make<TDBluetoothCell>();
    const auto panel = cell->viewWithTag(121212);
    panel->viewWithTag(121213)->removeFromSuperview();
    panel->setFrame({});
    cell->layoutIfNeeded();
    EXPECT_EQ(panel->frame(), (CGRect { 0, 0, 375, 80 }));
    panel->removeFromSuperview();
    cell->updateData();
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->title(), "Title");
}

} // namespace
