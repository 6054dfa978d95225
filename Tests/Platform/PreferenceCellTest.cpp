#include "Platform/PhoneTest.h"
#include "PreferencesUI/PSTableCell.h"

#include <cmath>
#include <functional>
#include <limits>
#include <sstream>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Keeps the value of every row, and writes down what is stored.
class ValueStore final : public NSObject {
    NS_CLASS(ValueStore, NSObject)
public:
    Value value;
    std::vector<Value> stored;
    std::function<void()> onStore;

    Value read(const Row& /*row*/) { return value; }
    void write_row(const Value& written, const Row& /*row*/)
    {
        stored.push_back(written);
        value = written;
        if (onStore)
            onStore();
    }
};

NS_IMPLEMENTATION(ValueStore, NS_METHOD(read), NS_METHOD(write_row))

std::string textOf(const CGRect& frame)
{
    std::ostringstream text;
    text << frame.x << "," << frame.y << " " << frame.width << "x" << frame.height;
    return text.str();
}

/// Texts are estimated here: a character of the system font is 8.5 points wide and 21 high.
class PreferenceCells : public PhoneTest {
protected:
    Row rowOf(PSCellType type, const Dictionary& properties = {}, const Class* detail = nullptr) const
    {
        Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Title", store, "write:row:", "read:", detail, type, nullptr);
        for (const auto& [key, value] : properties)
            row->setProperty_forKey(value, key);
        return row;
    }
    template <class Cell>
    static std::shared_ptr<Cell> cellOf(const Row& row, UITableViewCellStyle style = UITableViewCellStyle::Default)
    {
        auto cell = std::make_shared<Cell>();
        EXPECT_TRUE(cell->initWithStyle_reuseIdentifier_specifier(style, "reuse", row));
        return cell;
    }
    std::shared_ptr<PSSliderTableCell> sliderCell(const Dictionary& properties = {}) const
    {
        return cellOf<PSSliderTableCell>(rowOf(PSCellType::Slider, properties));
    }
    static std::shared_ptr<PSSegmentableSlider> sliderOf(const std::shared_ptr<PSSliderTableCell>& cell)
    {
        return std::dynamic_pointer_cast<PSSegmentableSlider>(cell->control());
    }
    std::shared_ptr<PSSegmentableSlider> slider(const Dictionary& properties = {})
    {
        kept = sliderCell(properties);
        return sliderOf(kept);
    }
    static std::shared_ptr<UISwitch> switchOf(const std::shared_ptr<PSSwitchTableCell>& cell)
    {
        return std::dynamic_pointer_cast<UISwitch>(cell->control());
    }

    const std::shared_ptr<ValueStore> store = std::make_shared<ValueStore>();
    std::shared_ptr<PSSliderTableCell> kept;
};

TEST_F(PreferenceCells, ShowTheTitleAndTheIconOfTheirRow)
{
    const auto icon = UIImage::imageWithData(phone.png(29, 29));
    const Row row = rowOf(PSCellType::Link, { { PSProperty::iconImage, icon } });
    const auto cell = cellOf<PSTableCell>(row);
    EXPECT_EQ(cell->specifier(), row);
    EXPECT_EQ(cell->title(), "Title");
    EXPECT_EQ(cell->textLabel()->text(), "Title");
    EXPECT_EQ(cell->imageView()->image(), icon);
    EXPECT_EQ(cell->reuseIdentifier(), "reuse");
    EXPECT_TRUE(cell->isUserInteractionEnabled());
    EXPECT_EQ(cell->accessoryType(), UITableViewCellAccessoryType::None);
    EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::Default);
}

TEST_F(PreferenceCells, OfARowAloneHaveTheDefaultStyleAndAreNotReused)
{
    const auto cell = std::make_shared<PSTableCell>();
    EXPECT_TRUE(cell->initWithSpecifier(rowOf(PSCellType::Link)));
    EXPECT_EQ(cell->style(), UITableViewCellStyle::Default);
    EXPECT_EQ(cell->reuseIdentifier(), std::nullopt);
}

TEST_F(PreferenceCells, OfNoRowAreEmpty)
{
    for (const auto& cell :
        { std::make_shared<PSTableCell>(), std::static_pointer_cast<PSTableCell>(std::make_shared<PSSwitchTableCell>()),
            std::static_pointer_cast<PSTableCell>(std::make_shared<PSSliderTableCell>()) }) {
        EXPECT_TRUE(cell->initWithSpecifier(nullptr));
        EXPECT_EQ(cell->specifier(), nullptr);
        EXPECT_EQ(cell->title(), std::nullopt);
        cell->setFrame({ 0, 0, 320, cell->preferredHeightForWidth(320) });
        cell->layoutIfNeeded();
        if (const auto control = std::dynamic_pointer_cast<PSControlTableCell>(cell))
            control->controlChanged(nullptr);
    }
    EXPECT_TRUE(store->stored.empty());
}

TEST_F(PreferenceCells, OfARowWithoutATitleShowNone)
{
    EXPECT_EQ(cellOf<PSTableCell>(PSSpecifier::emptyGroupSpecifier())->title(), std::nullopt);
}

TEST_F(PreferenceCells, DoNotShowAnIconThatIsNoImage)
{
    for (const Value& icon : { Value("Misc"), Value(store), Value(5) })
        EXPECT_EQ(
            cellOf<PSTableCell>(rowOf(PSCellType::Link, { { PSProperty::iconImage, icon } }))->imageView()->image(),
            nullptr);
}

TEST_F(PreferenceCells, PointOnwardsWhereTheRowOpensAPage)
{
    const auto cell = cellOf<PSTableCell>(rowOf(PSCellType::Link, {}, &PSTableCell::classObject()));
    EXPECT_EQ(cell->accessoryType(), UITableViewCellAccessoryType::DisclosureIndicator);
}

TEST_F(PreferenceCells, CannotBeWorkedWhereTheRowIsNotEnabled)
{
    const std::pair<Value, bool> cases[] = { { Value(), true }, { true, true }, { false, false }, { 0, false },
        { "NO", false }, { "YES", true }, { Array {}, false } };
    for (const auto& [enabled, expected] : cases) {
        const Row row = rowOf(PSCellType::Switch, { { PSProperty::enabled, enabled } });
        EXPECT_EQ(cellOf<PSTableCell>(row)->isUserInteractionEnabled(), expected);
        const auto cell = cellOf<PSSwitchTableCell>(row);
        EXPECT_EQ(cell->isUserInteractionEnabled(), expected);
        EXPECT_EQ(cell->control()->isEnabled(), expected);
    }
}

TEST_F(PreferenceCells, AreBroughtUpToWhatTheRowSaysNow)
{
    const Row row = rowOf(PSCellType::Switch);
    const auto cell = cellOf<PSSwitchTableCell>(row);
    EXPECT_FALSE(switchOf(cell)->isOn());
    row->setName("New");
    row->setProperty_forKey(false, PSProperty::enabled);
    row->setProperty_forKey(UIImage::imageWithData(phone.png(2, 2)), PSProperty::iconImage);
    store->value = true;
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ(cell->title(), "New");
    EXPECT_TRUE(cell->imageView()->image());
    EXPECT_TRUE(switchOf(cell)->isOn());
    EXPECT_FALSE(switchOf(cell)->isEnabled());
    cell->refreshCellContentsWithSpecifier(nullptr);
    EXPECT_EQ(cell->title(), "New");
    EXPECT_TRUE(store->stored.empty());
}

TEST_F(PreferenceCells, OfStaticTextsShowAllOfTheirLines)
{
    const Row row = rowOf(PSCellType::StaticText);
    row->setName(std::string(100, 'x'));
    const auto cell = cellOf<PSTableCell>(row);
    EXPECT_EQ(cell->textLabel()->numberOfLines(), 0);
    EXPECT_EQ(cell->preferredHeightForWidth(320), 85);
    EXPECT_EQ(cell->preferredHeightForWidth(375), 85);
    EXPECT_EQ(cell->preferredHeightForWidth(768), 64);
}

TEST_F(PreferenceCells, OfTitlesWithAValueShowTheValueAsItIsPrinted)
{
    const std::pair<Value, std::string> cases[] = { { "1.0", "1.0" }, { 5, "5" }, { 2.5, "2.5" }, { true, "1" },
        { Value(), "" }, { "", "" }, { Array { 1 }, "(\n    1\n)" } };
    for (const auto& [value, text] : cases) {
        store->value = value;
        const auto cell = cellOf<PSTableCell>(rowOf(PSCellType::TitleValue), UITableViewCellStyle::Value1);
        EXPECT_EQ(cell->detailTextLabel()->text(), text);
        EXPECT_EQ(cell->detailTextLabel()->textColor(), (UIColor { 142 / 255.0F, 142 / 255.0F, 147 / 255.0F, 1 }));
    }
}

TEST_F(PreferenceCells, WithoutASecondTextShowNoValue)
{
    store->value = "value";
    EXPECT_EQ(cellOf<PSTableCell>(rowOf(PSCellType::TitleValue))->detailTextLabel(), nullptr);
    EXPECT_EQ(cellOf<PSTableCell>(rowOf(PSCellType::Link), UITableViewCellStyle::Value1)->detailTextLabel()->text(),
        std::nullopt);
}

TEST_F(PreferenceCells, WithASwitchShowTheBooleanReadingOfTheValue)
{
    const std::pair<Value, bool> cases[] = { { true, true }, { false, false }, { Value(), false }, { 1, true },
        { 0.0, false }, { "YES", true }, { "off", false }, { Bytes { 1 }, false } };
    for (const auto& [value, on] : cases) {
        store->value = value;
        const auto cell = cellOf<PSSwitchTableCell>(rowOf(PSCellType::Switch));
        EXPECT_EQ(switchOf(cell)->isOn(), on);
        EXPECT_EQ(cell->controlValue(), Value(on));
        EXPECT_EQ(cell->accessoryView(), cell->control());
        EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::None);
        EXPECT_EQ(cell->subviews().size(), 3U);
    }
    EXPECT_TRUE(store->stored.empty());
}

TEST_F(PreferenceCells, StoreABooleanWhenTheSwitchIsMoved)
{
    const auto cell = cellOf<PSSwitchTableCell>(rowOf(PSCellType::Switch));
    for (const bool on : { true, false, true }) {
        switchOf(cell)->setOn_animated(on, true);
        switchOf(cell)->sendActionsForControlEvents(UIControlEventValueChanged);
    }
    EXPECT_EQ(store->stored, (std::vector<Value> { true, false, true }));
}

TEST_F(PreferenceCells, MayBeLetGoOfWhileTheirValueIsStored)
{
    auto cell = cellOf<PSSwitchTableCell>(rowOf(PSCellType::Switch));
    const std::weak_ptr<PSSwitchTableCell> watched = cell;
    const auto control = switchOf(cell);
    store->onStore = [&] { cell.reset(); };
    control->setOn_animated(true, true);
    control->sendActionsForControlEvents(UIControlEventValueChanged);
    EXPECT_EQ(store->stored, std::vector<Value> { true });
    EXPECT_TRUE(watched.expired());
    control->sendActionsForControlEvents(UIControlEventValueChanged);
    EXPECT_EQ(store->stored.size(), 1U);
}

TEST_F(PreferenceCells, WhoseTargetIsGoneShowAndStoreNothing)
{
    Row row;
    {
        const auto gone = std::make_shared<ValueStore>();
        gone->value = true;
        row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Title", gone, "write:row:", "read:", nullptr, PSCellType::Switch, nullptr);
    }
    const auto cell = cellOf<PSSwitchTableCell>(row);
    EXPECT_FALSE(switchOf(cell)->isOn());
    switchOf(cell)->sendActionsForControlEvents(UIControlEventValueChanged);
}

TEST_F(PreferenceCells, WithASliderTakeRangeStepsAndValueFromTheRow)
{
    store->value = 3;
    const auto control = slider({ { "min", 1 }, { "max", 10 }, { "isSegmented", true }, { "segmentCount", 9 },
        { "showValue", true }, { "isContinuous", false } });
    EXPECT_EQ(control->minimumValue(), 1);
    EXPECT_EQ(control->maximumValue(), 10);
    EXPECT_EQ(control->value(), 3);
    EXPECT_EQ(control->segmentCount(), 9);
    EXPECT_TRUE(control->showsValue());
    EXPECT_FALSE(control->isContinuous());
    EXPECT_EQ(kept->controlValue(), Value(3.0));
    EXPECT_EQ(kept->selectionStyle(), UITableViewCellSelectionStyle::None);
}

TEST_F(PreferenceCells, WithASliderGoFromZeroToOneWhereTheRowSaysNothing)
{
    const auto control = slider();
    EXPECT_EQ(control->minimumValue(), 0);
    EXPECT_EQ(control->maximumValue(), 1);
    EXPECT_EQ(control->value(), 0);
    EXPECT_EQ(control->segmentCount(), 0);
    EXPECT_FALSE(control->showsValue());
    EXPECT_TRUE(control->isContinuous());
}

TEST_F(PreferenceCells, WithASliderReadPropertiesOfOtherTypes)
{
    store->value = "7.5 seconds";
    const auto control = slider({ { "min", "2" }, { "max", "9.5" }, { "isSegmented", 1 }, { "segmentCount", "3" } });
    EXPECT_EQ(control->minimumValue(), 2);
    EXPECT_EQ(control->maximumValue(), 9.5F);
    EXPECT_EQ(control->value(), 7.5F);
    EXPECT_EQ(control->segmentCount(), 3);
}

TEST_F(PreferenceCells, WithASliderKeepToTheRangeWhateverIsStored)
{
    const std::pair<Value, float> cases[] = { { Value(), 1 }, { -5, 1 }, { 1e300, 10 }, { std::nan(""), 1 },
        { -infinity, 1 }, { "many", 1 }, { Array { 5 }, 1 }, { true, 1 }, { 18446744073709551615UL, 10 } };
    for (const auto& [value, shown] : cases) {
        store->value = value;
        EXPECT_EQ(slider({ { "min", 1 }, { "max", 10 } })->value(), shown);
    }
    EXPECT_TRUE(store->stored.empty());
}

TEST_F(PreferenceCells, WithASliderSurviveASenselessRange)
{
    store->value = 5;
    const std::pair<Value, Value> ranges[] = { { 10, 1 }, { std::nan(""), std::nan("") }, { -infinity, infinity },
        { 1e300, 1e301 }, { -1e300, 1e300 }, { "low", "high" }, { Array {}, Dictionary {} } };
    for (const auto& [minimum, maximum] : ranges) {
        for (const Value& segments : { Value(0), Value(-3), Value(3), Value(18446744073709551615UL) }) {
            const auto control = slider({ { "min", minimum }, { "max", maximum }, { "isSegmented", true },
                { "segmentCount", segments }, { "showValue", true } });
            control->drag(0.5F);
            control->release();
            EXPECT_GE(control->value(), control->minimumValue());
            EXPECT_LE(control->value(), control->maximumValue());
            EXPECT_FALSE(control->valueText().empty());
        }
    }
}

TEST_F(PreferenceCells, WithASliderStoreWhatItShowsWhenItIsMoved)
{
    const auto control = slider({ { "min", 0 }, { "max", 10 } });
    control->drag(2.5F);
    control->drag(20);
    control->release();
    EXPECT_EQ(store->stored, (std::vector<Value> { 2.5, 10.0, 10.0 }));
}

TEST_F(PreferenceCells, WithAnotherSliderStoreItsValue)
{
    store->value = 4;
    const auto cell = sliderCell({ { "min", 0 }, { "max", 10 }, { "isContinuous", false } });
    const auto before = cell->control();
    const auto after = std::make_shared<PSSegmentableSlider>();
    cell->setControl(after);
    after->addTarget_action_forControlEvents(cell, "controlChanged:", UIControlEventValueChanged);
    EXPECT_EQ(before->superview(), nullptr);
    EXPECT_EQ(after->superview(), cell);
    EXPECT_EQ(after->maximumValue(), 10);
    EXPECT_EQ(after->value(), 4);
    EXPECT_FALSE(after->isContinuous());
    after->drag(6);
    after->release();
    EXPECT_EQ(store->stored, std::vector<Value> { 6.0 });
}

TEST_F(PreferenceCells, WithoutTheirSliderHaveNoValue)
{
    const auto cell = sliderCell();
    cell->setControl(nullptr);
    EXPECT_EQ(cell->controlValue(), Value());
    cell->setFrame({ 0, 0, 320, 44 });
    cell->layoutIfNeeded();
    cell->refreshCellContentsWithSpecifier(cell->specifier());
    EXPECT_EQ(cell->subviews().size(), 2U);
}

TEST_F(PreferenceCells, WithASliderPutTitleAndSliderInTheMiddle)
{
    const auto framesAt = [](PSSliderTableCell& cell, double width) {
        cell.setFrame({ 0, 0, width, cell.preferredHeightForWidth(width) });
        cell.layoutIfNeeded();
        return textOf(cell.frame()) + " | text " + textOf(cell.textLabel()->frame()) + " | slider "
            + textOf(cell.control()->frame());
    };
    const auto cell = sliderCell();
    EXPECT_EQ(framesAt(*cell, 320), "0,0 320x44 | text 16,11.5 288x21 | slider 16,6.5 288x31");
    EXPECT_EQ(framesAt(*cell, 375), "0,0 375x44 | text 16,11.5 343x21 | slider 16,6.5 343x31");
    EXPECT_EQ(framesAt(*cell, 768), "0,0 768x44 | text 20,11.5 728x21 | slider 20,6.5 728x31");
    const auto withIcon = sliderCell({ { PSProperty::iconImage, UIImage::imageWithData(phone.png(29, 29)) } });
    EXPECT_EQ(framesAt(*withIcon, 320), "0,0 320x44 | text 60,11.5 244x21 | slider 60,6.5 244x31");
    EXPECT_EQ(framesAt(*withIcon, 375), "0,0 375x44 | text 60,11.5 299x21 | slider 60,6.5 299x31");
    EXPECT_EQ(framesAt(*withIcon, 768), "0,0 768x44 | text 64,11.5 684x21 | slider 64,6.5 684x31");
    cell->textLabel()->setText(std::string(100, 'x'));
    EXPECT_EQ(framesAt(*cell, 320), "0,0 320x44 | text 16,11.5 288x21 | slider 16,6.5 288x31");
    cell->textLabel()->setNumberOfLines(0);
    EXPECT_EQ(framesAt(*cell, 320), "0,0 320x86 | text 16,11.5 288x63 | slider 16,48.5 288x31");
    EXPECT_EQ(framesAt(*cell, 768), "0,0 768x65 | text 20,11.5 728x42 | slider 20,27.5 728x31");
}

TEST_F(PreferenceCells, WithASwitchPutItAtTheEnd)
{
    const auto cell = cellOf<PSSwitchTableCell>(rowOf(PSCellType::Switch));
    std::string frames;
    for (const double width : { 320, 375, 768 }) {
        cell->setFrame({ 0, 0, width, cell->preferredHeightForWidth(width) });
        cell->layoutIfNeeded();
        frames += textOf(cell->textLabel()->frame()) + " | " + textOf(cell->control()->frame()) + "\n";
    }
    EXPECT_EQ(
        frames, "16,11.5 229x21 | 253,6.5 51x31\n16,11.5 284x21 | 308,6.5 51x31\n20,11.5 669x21 | 697,6.5 51x31\n");
}

class SegmentableSliders : public ::testing::Test {
protected:
    /// Where the thumb rests after it was let go at that value.
    float resting(float value, float minimum, float maximum, long segments)
    {
        slider->setRange(minimum, maximum);
        slider->setSegmentCount(segments);
        slider->drag(value);
        slider->release();
        return slider->value();
    }
    std::string textAt(float value)
    {
        slider->setRange(-100, 100);
        slider->setValue(value);
        return slider->valueText();
    }
    const std::shared_ptr<PSSegmentableSlider> slider = std::make_shared<PSSegmentableSlider>();
};

TEST_F(SegmentableSliders, RestAtTheNearestStep)
{
    EXPECT_EQ(resting(4.4F, 1, 10, 9), 4);
    EXPECT_EQ(resting(4.6F, 1, 10, 9), 5);
    EXPECT_EQ(resting(0, 1, 10, 9), 1);
    EXPECT_EQ(resting(99, 1, 10, 9), 10);
    EXPECT_EQ(resting(0.3F, 0, 1, 2), 0.5F);
    EXPECT_EQ(resting(0.2F, 0, 1, 1), 0);
    EXPECT_EQ(resting(-3, -5, 5, 2), -5);
    EXPECT_EQ(resting(-2, -5, 5, 2), 0);
}

TEST_F(SegmentableSliders, RestWhereTheyAreLetGoWithoutSteps)
{
    EXPECT_EQ(resting(4.4F, 1, 10, 0), 4.4F);
    EXPECT_EQ(resting(4.4F, 1, 10, -9), 4.4F);
    EXPECT_EQ(slider->segmentCount(), 0);
    EXPECT_EQ(resting(5, 3, 3, 9), 3);
}

TEST_F(SegmentableSliders, ShowTheValueWithAtMostOneDigitBehindThePoint)
{
    const std::pair<float, const char*> cases[] = { { 3, "3" }, { 3.00005F, "3" }, { 2.9999F, "3" }, { 2.5F, "2.5" },
        { 2.54F, "2.5" }, { 0.3F, "0.3" }, { 99.99F, "100" }, { -2.5F, "-2.5" }, { -3, "-3" } };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(textAt(value), text) << value;
}

TEST_F(SegmentableSliders, ShowZeroWithoutASign)
{
    for (const float value : { 0.0F, -0.0F, 0.00001F, -0.00001F, -0.04F, 0.04F })
        EXPECT_EQ(textAt(value), "0") << value;
}

TEST_F(SegmentableSliders, LeaveRoomBehindTheTrackWhereTheyShowTheValue)
{
    const CGRect bounds { 5, 6, 200, 31 };
    EXPECT_EQ(slider->trackRectForBounds(bounds), bounds);
    slider->setShowsValue(true);
    EXPECT_EQ(slider->trackRectForBounds(bounds), (CGRect { 5, 6, 152, 31 }));
    EXPECT_EQ(slider->valueTextRectForBounds(bounds), (CGRect { 165, 6, 30, 31 }));
    EXPECT_LE(slider->trackRectForBounds(bounds).maxX(), slider->valueTextRectForBounds(bounds).x);
    EXPECT_EQ(slider->trackRectForBounds({ 0, 0, 20, 31 }), (CGRect { 0, 0, 0, 31 }));
}

} // namespace
