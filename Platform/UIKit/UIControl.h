#pragma once

#include "UIKit/UIView.h"

#include <string>
#include <vector>

/// What happens to a control; a mask may hold several.
enum UIControlEvents : unsigned {
    UIControlEventTouchUpInside = 1U << 6,
    UIControlEventValueChanged = 1U << 12,
};

/// A view that is worked by the user and tells its targets.
class UIControl : public UIView {
    NS_CLASS(UIControl, UIView)
public:
    bool isEnabled() const { return _enabled; }
    void setEnabled(bool enabled) { _enabled = enabled; }

    /// The target, held weakly, performs the selector with the control as its argument.
    void addTarget_action_forControlEvents(
        const std::shared_ptr<NSObject>& target, std::string action, unsigned events);
    /// In the order in which the targets were added.
    void sendActionsForControlEvents(unsigned events);

private:
    struct TargetAction {
        std::weak_ptr<NSObject> target;
        std::string action;
        unsigned events;
    };

    bool _enabled = true;
    std::vector<TargetAction> _targets;
};

class UISwitch : public UIControl {
    NS_CLASS(UISwitch, UIControl)
public:
    UISwitch();

    bool isOn() const { return _on; }
    /// Sends no event.
    void setOn_animated(bool on, bool animated);
    /// The colour of the switch while it is on; absent for the platform's own.
    const std::optional<UIColor>& onTintColor() const { return _onTintColor; }
    void setOnTintColor(std::optional<UIColor> color) { _onTintColor = color; }

private:
    bool _on = false;
    std::optional<UIColor> _onTintColor;
};

class UISlider : public UIControl {
    NS_CLASS(UISlider, UIControl)
public:
    float minimumValue() const { return _minimumValue; }
    float maximumValue() const { return _maximumValue; }
    /// A range that ends below its beginning is empty; the value is kept within the range.
    void setRange(float minimum, float maximum);
    float value() const { return _value; }
    /// Cut to the range; a value that is no number becomes the minimum. Sends no event.
    void setValue(float value);
    /// Whether events are sent while the thumb moves, or once, when it is let go.
    bool isContinuous() const { return _continuous; }
    void setContinuous(bool continuous) { _continuous = continuous; }

    /// Where the thumb stops when it is let go at that value: the value itself, unless a subclass has steps.
    virtual float restingValue(float value) const { return value; }
    /// The user moves the thumb there and holds it.
    void drag(float value);
    /// The user lets the thumb go.
    void release();

private:
    float _minimumValue = 0;
    float _maximumValue = 1;
    float _value = 0;
    bool _continuous = true;
};
