#include "PreferencesUI/PSTableCell.h"

#include "Foundation/NSString.h"

#include <algorithm>
#include <cmath>

NS_IMPLEMENTATION(PSTableCell, NS_INITIALIZER(initWithStyle_reuseIdentifier_specifier),
    NS_INITIALIZER(initWithSpecifier), NS_METHOD(specifier), NS_METHOD(title), NS_METHOD(setTitle),
    NS_METHOD(refreshCellContentsWithSpecifier), NS_METHOD(preferredHeightForWidth))
NS_IMPLEMENTATION(
    PSControlTableCell, NS_METHOD(control), NS_METHOD(setControl), NS_METHOD(controlValue), NS_METHOD(controlChanged))
NS_IMPLEMENTATION(PSSwitchTableCell)
NS_IMPLEMENTATION(PSSegmentableSlider, NS_METHOD(valueTextRectForBounds))
NS_IMPLEMENTATION(PSSliderTableCell)

namespace {

constexpr const char* controlChangedAction = "controlChanged:";
constexpr double sliderHeight = 31;
constexpr double sliderRowHeight = 44;
/// A title of one line at the usual text size; what a larger one needs more is made room for.
constexpr double usualTitleHeight = 21;
/// Behind the track: where the value begins, counted from the end of the slider, and how wide it is.
constexpr double valueTextStart = 40;
constexpr double valueTextWidth = 30;
constexpr double valueTextSpacing = 8;
constexpr float wholeNumberTolerance = 1e-4F;

UIColor secondaryLabelColor()
{
    // The grey of values beside titles: dark enough on both appearances.
    return { 0x8E / 255.0F, 0x8E / 255.0F, 0x93 / 255.0F, 1 };
}

std::string shownValue(const Value& value)
{
    return value.kind() == Value::Kind::Null ? std::string() : descriptionOf(value);
}

} // namespace

bool PSTableCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row)
{
    initWithStyle_reuseIdentifier(style, std::move(reuseIdentifier));
    _specifier = row;
    refreshCellContentsWithSpecifier(row);
    return true;
}

bool PSTableCell::initWithSpecifier(const Row& row)
{
    return initWithStyle_reuseIdentifier_specifier(UITableViewCellStyle::Default, std::nullopt, row);
}

void PSTableCell::refreshCellContentsWithSpecifier(const Row& row)
{
    if (!row)
        return;
    setTitle(row->name());
    imageView()->setImage(row->propertyForKey(PSProperty::iconImage).as<UIImage>());
    setUserInteractionEnabled(row->isEnabled());
    setAccessoryType(row->detailControllerClass() ? UITableViewCellAccessoryType::DisclosureIndicator
                                                  : UITableViewCellAccessoryType::None);
    if (row->cellType() == PSCellType::StaticText)
        textLabel()->setNumberOfLines(0);
    if (row->cellType() == PSCellType::TitleValue && detailTextLabel()) {
        detailTextLabel()->setText(shownValue(row->performGetter()));
        detailTextLabel()->setTextColor(secondaryLabelColor());
    }
}

double PSTableCell::preferredHeightForWidth(double width)
{
    return heightThatFits(width);
}

void PSControlTableCell::setControl(std::shared_ptr<UIControl> control)
{
    if (_control)
        _control->removeFromSuperview();
    _control = std::move(control);
    addSubview(_control);
}

void PSControlTableCell::controlChanged(const std::shared_ptr<UIControl>& /*sender*/)
{
    // The row may be dropped, and this cell with it, while its setter runs.
    const auto keptAlive = self();
    if (const Row row = specifier())
        row->performSetterWithValue(controlValue());
}

void PSControlTableCell::refreshCellContentsWithSpecifier(const Row& row)
{
    PSTableCell::refreshCellContentsWithSpecifier(row);
    setSelectionStyle(UITableViewCellSelectionStyle::None);
    if (_control)
        _control->setEnabled(isUserInteractionEnabled());
}

bool PSSwitchTableCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row)
{
    if (!PSControlTableCell::initWithStyle_reuseIdentifier_specifier(style, std::move(reuseIdentifier), row))
        return false;
    const auto control = std::make_shared<UISwitch>();
    control->addTarget_action_forControlEvents(self(), controlChangedAction, UIControlEventValueChanged);
    setControl(control);
    setAccessoryView(control);
    refreshCellContentsWithSpecifier(row);
    return true;
}

std::shared_ptr<UISwitch> PSSwitchTableCell::switchControl() const
{
    return std::dynamic_pointer_cast<UISwitch>(control());
}

void PSSwitchTableCell::refreshCellContentsWithSpecifier(const Row& row)
{
    PSControlTableCell::refreshCellContentsWithSpecifier(row);
    const auto control = switchControl();
    if (control && row)
        control->setOn_animated(row->performGetter().boolValue(), false);
}

Value PSSwitchTableCell::controlValue() const
{
    const auto control = switchControl();
    return control && control->isOn();
}

CGRect PSSegmentableSlider::valueTextRectForBounds(const CGRect& bounds) const
{
    return { bounds.x + bounds.width - valueTextStart, bounds.y, valueTextWidth, bounds.height };
}

CGRect PSSegmentableSlider::trackRectForBounds(const CGRect& bounds) const
{
    if (!_showsValue)
        return bounds;
    return { bounds.x, bounds.y, std::max(0.0, bounds.width - valueTextStart - valueTextSpacing), bounds.height };
}

std::string PSSegmentableSlider::valueText() const
{
    const float whole = std::round(value());
    const bool isWhole = std::abs(value() - whole) < wholeNumberTolerance;
    const double shown = isWhole ? double { whole } : std::round(value() * 10) / 10.0;
    // Adding zero takes the sign from minus zero.
    return descriptionOf(Value(shown + 0.0));
}

float PSSegmentableSlider::restingValue(float value) const
{
    const float range = maximumValue() - minimumValue();
    if (_segmentCount == 0 || !(range > 0))
        return value;
    const auto segments = static_cast<float>(_segmentCount);
    return minimumValue() + std::round((value - minimumValue()) / range * segments) * range / segments;
}

bool PSSliderTableCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row)
{
    if (!PSControlTableCell::initWithStyle_reuseIdentifier_specifier(style, std::move(reuseIdentifier), row))
        return false;
    const auto slider = std::make_shared<PSSegmentableSlider>();
    slider->addTarget_action_forControlEvents(self(), controlChangedAction, UIControlEventValueChanged);
    setControl(slider);
    refreshCellContentsWithSpecifier(row);
    return true;
}

void PSSliderTableCell::setControl(std::shared_ptr<UIControl> control)
{
    PSControlTableCell::setControl(std::move(control));
    const auto slider = std::dynamic_pointer_cast<UISlider>(this->control());
    if (!slider || !specifier())
        return;
    const Value& continuous = specifier()->propertyForKey(PSProperty::isContinuous);
    slider->setContinuous(continuous.isNull() || continuous.boolValue());
    refreshCellContentsWithSpecifier(specifier());
}

void PSSliderTableCell::refreshCellContentsWithSpecifier(const Row& row)
{
    PSControlTableCell::refreshCellContentsWithSpecifier(row);
    const auto slider = std::dynamic_pointer_cast<UISlider>(control());
    if (!slider || !row)
        return;
    const Value& maximum = row->propertyForKey(PSProperty::maximum);
    slider->setRange(static_cast<float>(row->propertyForKey(PSProperty::minimum).doubleValue()),
        maximum.isNull() ? 1 : static_cast<float>(maximum.doubleValue()));
    slider->setValue(static_cast<float>(row->performGetter().doubleValue()));
    const auto segmentable = std::dynamic_pointer_cast<PSSegmentableSlider>(slider);
    if (!segmentable)
        return;
    segmentable->setShowsValue(row->propertyForKey(PSProperty::showValue).boolValue());
    const bool segmented = row->propertyForKey(PSProperty::isSegmented).boolValue();
    segmentable->setSegmentCount(segmented ? row->propertyForKey(PSProperty::segmentCount).integerValue() : 0);
}

Value PSSliderTableCell::controlValue() const
{
    const auto slider = std::dynamic_pointer_cast<UISlider>(control());
    return slider ? Value(double { slider->value() }) : Value();
}

double PSSliderTableCell::extraTitleHeight(double width) const
{
    if (textLabel()->numberOfLines() == 1)
        return 0;
    return std::max(0.0, textLabel()->sizeThatFits(textArea(width).width).height - usualTitleHeight);
}

double PSSliderTableCell::heightThatFits(double width) const
{
    return sliderRowHeight + extraTitleHeight(width);
}

void PSSliderTableCell::layoutSubviews()
{
    PSControlTableCell::layoutSubviews();
    if (!control())
        return;
    const TextArea area = textArea(frame().width);
    const double title = textLabel()->sizeThatFits(area.width).height;
    const double lower = extraTitleHeight(frame().width) / 2;
    textLabel()->setFrame({ area.x, (frame().height - title) / 2, area.width, title });
    control()->setFrame({ area.x, (frame().height - sliderHeight) / 2 + lower, area.width, sliderHeight });
}
