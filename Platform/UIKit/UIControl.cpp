#include "UIKit/UIControl.h"

#include <algorithm>
#include <cmath>

NS_IMPLEMENTATION(UIControl)
NS_IMPLEMENTATION(UISwitch)
NS_IMPLEMENTATION(UISlider)

namespace {

constexpr double switchWidth = 51;
constexpr double switchHeight = 31;

} // namespace

void UIControl::addTarget_action_forControlEvents(
    const std::shared_ptr<NSObject>& target, std::string action, unsigned events)
{
    _targets.push_back({ target, std::move(action), events });
}

void UIControl::sendActionsForControlEvents(unsigned events)
{
    const Value sender(self());
    // A copy, because an action may rebuild the page and with it the control.
    const auto targets = _targets;
    for (const TargetAction& entry : targets) {
        const auto target = entry.target.lock();
        if (target && (entry.events & events) != 0)
            target->performSelector(entry.action, sender);
    }
}

UISwitch::UISwitch()
{
    setFrame({ 0, 0, switchWidth, switchHeight });
}

void UISwitch::setOn_animated(bool on, bool /*animated*/)
{
    _on = on;
}

void UISlider::setRange(float minimum, float maximum)
{
    _minimumValue = std::isnan(minimum) ? 0 : minimum;
    _maximumValue = maximum > _minimumValue ? maximum : _minimumValue;
    setValue(_value);
}

void UISlider::setValue(float value)
{
    _value = std::isnan(value) ? _minimumValue : std::clamp(value, _minimumValue, _maximumValue);
}

void UISlider::drag(float value)
{
    setValue(value);
    if (_continuous)
        sendActionsForControlEvents(UIControlEventValueChanged);
}

void UISlider::release()
{
    setValue(restingValue(_value));
    sendActionsForControlEvents(UIControlEventValueChanged);
}
