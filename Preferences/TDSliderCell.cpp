#include "TDSliderCell.h"

#include "TDPageStyle.h"

NS_IMPLEMENTATION(TDSegmentableSlider)
NS_IMPLEMENTATION(TDSliderCell, NS_METHOD(defaultCellHeight), NS_METHOD(updateData))

namespace {

constexpr double valueTextExtraWidth = 10.0;
/// How far the title goes up and the slider down from where the base puts them.
constexpr double verticalShift = 15.0;
/// What a row of two lines needs more than the base's row of one.
constexpr double secondLineHeight = TDSliderCell::defaultCellHeight() - 44.0;

} // namespace

CGRect TDSegmentableSlider::valueTextRectForBounds(const CGRect& bounds) const
{
    CGRect rect = Super::valueTextRectForBounds(bounds);
    rect.width += valueTextExtraWidth;
    return rect;
}

bool TDSliderCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row)
{
    if (!Super::initWithStyle_reuseIdentifier_specifier(style, std::move(reuseIdentifier), row))
        return false;
    updateData(row);
    return true;
}

void TDSliderCell::updateData(const Row& row)
{
    textLabel()->setNumberOfLines(0);
    textLabel()->setHidden(false);
    textLabel()->setAlpha(1);
    textLabel()->setText(row ? row->name() : std::nullopt);

    const auto slider = std::make_shared<TDSegmentableSlider>();
    setControl(slider);
    slider->addTarget_action_forControlEvents(self(), "controlChanged:", UIControlEventValueChanged);
    slider->setBackgroundColor(UIColor::clearColor());
    slider->setTintColor(accentColor);
    slider->setContinuous(false);
}

double TDSliderCell::heightThatFits(double width) const
{
    return Super::heightThatFits(width) + secondLineHeight;
}

void TDSliderCell::layoutSubviews()
{
    Super::layoutSubviews();
    textLabel()->setHidden(false);
    textLabel()->setAlpha(1);
    textLabel()->setFrame(textLabel()->frame().offsetBy(0, -verticalShift));
    if (control())
        control()->setFrame(control()->frame().offsetBy(0, verticalShift));
}
