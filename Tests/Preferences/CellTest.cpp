#include "Support/PageTest.h"
#include "Support/Substitutes.h"
#include "TDCallsSettingsController.h"
#include "TDPageStyle.h"
#include "TDSliderCell.h"
#include "TDSwitchCell.h"

namespace {

constexpr const char* time = "TandemSimSelectionTimeForCalls";

/// A slider cell of the platform, told to show its title over as many lines as the product's.
class PlainSliderCell final : public PSSliderTableCell {
    NS_CLASS(PlainSliderCell, PSSliderTableCell)
};

NS_IMPLEMENTATION(PlainSliderCell)

class Cells : public PageTest {
protected:
    Cells() { phone.writePage("Root", {}); }

    std::shared_ptr<TDCallsSettingsController> openCallsWith(const Value& row)
    {
        phone.writePage("Calls", Array { row, item("PSGroupCell", "CopyRightHeader") });
        return page = open<TDCallsSettingsController>();
    }

    std::shared_ptr<TDCallsSettingsController> openSliderPage(Dictionary more = {})
    {
        more.merge(Dictionary { { "key", time }, { "default", 3 }, { "cellClass", "TDSliderCell" }, { "min", 1 },
            { "max", 10 }, { "isSegmented", true }, { "segmentCount", 9 }, { "showValue", true } });
        return openCallsWith(item("PSSliderCell", time, more));
    }

    std::shared_ptr<TDSegmentableSlider> slider()
    {
        return std::dynamic_pointer_cast<TDSegmentableSlider>(
            std::dynamic_pointer_cast<PSControlTableCell>(cellOf(*page, time))->control());
    }

    std::shared_ptr<TDCallsSettingsController> page;
};

TEST_F(Cells, BothInitialisersOfTheSliderCellShowTheSameTitleAndSlider)
{
    openSliderPage();
    const Row row = rowOf(*page, time);
    const auto bySpecifier = std::make_shared<TDSliderCell>();
    const auto byStyle = std::make_shared<TDSliderCell>();
    ASSERT_TRUE(bySpecifier->initWithSpecifier(row));
    ASSERT_TRUE(byStyle->initWithStyle_reuseIdentifier_specifier(UITableViewCellStyle::Default, std::nullopt, row));
    for (const auto& cell : { bySpecifier, byStyle }) {
        EXPECT_EQ(cell->style(), UITableViewCellStyle::Default);
        EXPECT_EQ(cell->reuseIdentifier(), std::nullopt);
        EXPECT_EQ(cell->textLabel()->text(), "Label of TandemSimSelectionTimeForCalls");
        const auto control = std::dynamic_pointer_cast<TDSegmentableSlider>(cell->control());
        ASSERT_TRUE(control);
        EXPECT_EQ(control->value(), 3);
        EXPECT_EQ(control->minimumValue(), 1);
        EXPECT_EQ(control->maximumValue(), 10);
        EXPECT_EQ(control->segmentCount(), 9);
        EXPECT_TRUE(control->showsValue());
        EXPECT_FALSE(control->isContinuous());
        EXPECT_EQ(control->frame(), CGRect());
        EXPECT_EQ(control->backgroundColor(), UIColor::clearColor());
        EXPECT_EQ(control->tintColor(), accentColor);
    }
}

TEST_F(Cells, SliderCellHoldsOneSliderInPlaceOfTheBases)
{
    openSliderPage();
    int sliders = 0;
    for (const auto& view : cellOf(*page, time)->subviews())
        sliders += std::dynamic_pointer_cast<UISlider>(view) != nullptr;
    EXPECT_EQ(sliders, 1);
}

TEST_F(Cells, LongTitleWrapsAndTheRowGrowsSoThatNothingOverlaps)
{
    std::string title;
    for (int i = 0; i < 12; ++i)
        title += "time to choose ";
    openSliderPage({ { "label", title } });
    const auto cell = cellOf(*page, time, 320);
    EXPECT_EQ(cell->textLabel()->numberOfLines(), 0);
    EXPECT_GT(cell->textLabel()->frame().height, 3 * cell->textLabel()->font().lineHeight());
    EXPECT_LE(cell->textLabel()->frame().maxY(), slider()->frame().y);
    EXPECT_GE(cell->textLabel()->frame().y, 0);
    EXPECT_LE(slider()->frame().maxY(), cell->frame().height);
}

TEST_F(Cells, SliderWritesOnceOnRelease)
{
    openSliderPage({ { "PostNotification", "changed" } });
    const auto control = slider();
    for (const float value : { 4.0F, 5.2F, 6.9F })
        control->drag(value);
    EXPECT_EQ(phone.notifications->names, Strings {});
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary()));
    control->release();
    EXPECT_EQ(phone.notifications->names, Strings { "changed" });
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { time, 7.0 } }));
}

TEST_F(Cells, TouchThatEndsOnTheSliderWritesNothing)
{
    openSliderPage({ { "PostNotification", "changed" } });
    slider()->sendActionsForControlEvents(UIControlEventTouchUpInside);
    EXPECT_EQ(phone.notifications->names, Strings {});
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary()));
}

TEST_F(Cells, ContinuousInThePageDefinitionDoesNotMakeTheSliderWriteWhileItMoves)
{
    openSliderPage({ { "isContinuous", true } });
    EXPECT_FALSE(slider()->isContinuous());
    cellOf(*page, time)->refreshCellContentsWithSpecifier(rowOf(*page, time));
    EXPECT_FALSE(slider()->isContinuous());
}

TEST_F(Cells, TitleAndSliderAreThirtyPointsFurtherApartThanTheBasePutsThem)
{
    openSliderPage();
    const Row row = rowOf(*page, time);
    const auto plain = std::make_shared<PlainSliderCell>();
    ASSERT_TRUE(plain->initWithSpecifier(row));
    plain->textLabel()->setNumberOfLines(0);
    const auto ours = std::make_shared<TDSliderCell>();
    ASSERT_TRUE(ours->initWithSpecifier(row));
    for (const double width : { 320.0, 375.0, 768.0 }) {
        for (const auto& cell : std::vector<std::shared_ptr<PSSliderTableCell>> { plain, ours }) {
            cell->setFrame({ 0, 0, width, 70 });
            cell->layoutIfNeeded();
            cell->layoutIfNeeded();
        }
        EXPECT_EQ(ours->textLabel()->frame(), plain->textLabel()->frame().offsetBy(0, -15));
        EXPECT_EQ(ours->control()->frame(), plain->control()->frame().offsetBy(0, 15));
    }
}

TEST_F(Cells, LayoutShowsATitleThatSomethingHidOrDimmed)
{
    openSliderPage();
    const auto cell = cellOf(*page, time);
    cell->textLabel()->setHidden(true);
    cell->textLabel()->setAlpha(0.2F);
    cell->layoutIfNeeded();
    EXPECT_FALSE(cell->textLabel()->isHidden());
    EXPECT_EQ(cell->textLabel()->alpha(), 1);
}

TEST_F(Cells, UpdateShowsATitleThatSomethingHidOrDimmed)
{
    openSliderPage();
    const auto cell = std::dynamic_pointer_cast<TDSliderCell>(cellOf(*page, time));
    cell->textLabel()->setHidden(true);
    cell->textLabel()->setAlpha(0.2F);
    cell->updateData(rowOf(*page, time));
    EXPECT_FALSE(cell->textLabel()->isHidden());
    EXPECT_EQ(cell->textLabel()->alpha(), 1);
}

TEST_F(Cells, SliderRowIsSeventyPointsHighWithOneLineOfTitle)
{
    openSliderPage();
    EXPECT_EQ(TDSliderCell::defaultCellHeight(), 70);
    EXPECT_EQ(cellOf(*page, time)->frame(), (CGRect { 0, 0, 375, 70 }));
    EXPECT_EQ(cellOf(*page, time)->textLabel()->frame(), (CGRect { 16, 9.5, 343, 21 }));
    EXPECT_EQ(slider()->frame(), (CGRect { 16, 34.5, 343, 31 }));
}

TEST_F(Cells, ValueTextIsTenPointsWiderAndItsLeftEdgeStays)
{
    const PSSegmentableSlider base;
    const TDSegmentableSlider ours;
    for (const CGRect bounds : { CGRect { 0, 0, 343, 31 }, CGRect { 5, 7, 10, 20 }, CGRect {} }) {
        CGRect expected = base.valueTextRectForBounds(bounds);
        expected.width += 10;
        EXPECT_EQ(ours.valueTextRectForBounds(bounds), expected);
    }
}

TEST_F(Cells, SliderValuesFromHostileFilesStayInRange)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const Value& stored : std::vector<Value> { nan, inf, -inf, 1e300, -1, "12abc", Array {}, true }) {
        phone.storeSettings({ { time, stored } });
        openRoot();
        openSliderPage();
        EXPECT_GE(slider()->value(), 1);
        EXPECT_LE(slider()->value(), 10);
    }
    phone.storeSettings({});
    openRoot();
    openSliderPage({ { "min", nan }, { "max", -inf }, { "segmentCount", -4 } });
    EXPECT_EQ(slider()->minimumValue(), 0);
    EXPECT_EQ(slider()->maximumValue(), 0);
    slider()->drag(5);
    slider()->release();
    EXPECT_EQ(slider()->value(), 0);
}

TEST_F(Cells, SwitchCellTakesItsColourFromTheCoreLibrary)
{
    const UIColor green { 0, 1, 0, 1 };
    const OtherBarColor other(TDSwitchCell::classObject(), green);
    openCallsWith(item("PSSwitchCell", "row", { { "cellClass", "TDSwitchCell" } }));
    const auto cell = std::dynamic_pointer_cast<TDSwitchCell>(cellOf(*page, "row"));
    ASSERT_TRUE(cell);
    const auto control = std::dynamic_pointer_cast<UISwitch>(cell->control());
    EXPECT_EQ(control->onTintColor(), green);
    EXPECT_EQ(control->frame(), (CGRect { 308, 6.5, 51, 31 }));
}

TEST_F(Cells, SwitchShowsTheStoredValueWhateverItsType)
{
    const std::vector<std::pair<Value, bool>> values { { true, true }, { false, false }, { 1, true }, { 0, false },
        { 0.5, true }, { "YES", true }, { "no", false }, { Array { 1 }, false }, { Bytes { 1 }, false } };
    for (const auto& [stored, on] : values) {
        phone.storeSettings({ { "Key", stored } });
        openRoot();
        openCallsWith(item("PSSwitchCell", "row", { { "key", "Key" } }));
        const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(cellOf(*page, "row"));
        EXPECT_EQ(std::dynamic_pointer_cast<UISwitch>(cell->control())->isOn(), on);
    }
}

} // namespace
