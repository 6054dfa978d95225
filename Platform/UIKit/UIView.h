#pragma once

#include "Runtime/NSObject.h"
#include "UIKit/UIColor.h"
#include "UIKit/UIGeometry.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// What the renderer below a view adds to it.
struct CALayer {
    /// Points.
    double cornerRadius = 0;
};

/// A rectangle on the screen: a frame in its superview's points, attributes, subviews from back to front.
class UIView : public NSObject {
    NS_CLASS(UIView, NSObject)
public:
    UIView() = default;
    ~UIView() override;

    const CGRect& frame() const { return _frame; }
    virtual void setFrame(const CGRect& frame) { _frame = frame; }
    /// The frame's size, at the origin.
    CGRect bounds() const { return { 0, 0, _frame.width, _frame.height }; }

    long tag() const { return _tag; }
    void setTag(long tag) { _tag = tag; }
    /// This view or the first one below it, depth first, that has the tag; null when there is none.
    std::shared_ptr<UIView> viewWithTag(long tag);

    bool isHidden() const { return _hidden; }
    void setHidden(bool hidden) { _hidden = hidden; }
    float alpha() const { return _alpha; }
    /// Inside an animation block the change is shown over the block's duration; the attribute has its new value at
    /// once.
    void setAlpha(float alpha);

    const std::optional<UIColor>& backgroundColor() const { return _backgroundColor; }
    void setBackgroundColor(std::optional<UIColor> color) { _backgroundColor = color; }
    const std::optional<UIColor>& tintColor() const { return _tintColor; }
    void setTintColor(std::optional<UIColor> color) { _tintColor = color; }

    CALayer& layer() { return _layer; }
    const CALayer& layer() const { return _layer; }
    bool clipsToBounds() const { return _clipsToBounds; }
    void setClipsToBounds(bool clips) { _clipsToBounds = clips; }

    bool isUserInteractionEnabled() const { return _userInteractionEnabled; }
    virtual void setUserInteractionEnabled(bool enabled) { _userInteractionEnabled = enabled; }

    /// In front of the others. A view cannot be added to itself, nor to one that it holds.
    void addSubview(const std::shared_ptr<UIView>& view);
    void removeFromSuperview();
    std::shared_ptr<UIView> superview() const { return _superview.lock(); }
    const std::vector<std::shared_ptr<UIView>>& subviews() const { return _subviews; }

    /// Places the subviews. Called after the frame or something in the view has changed; subclasses call their base
    /// first.
    virtual void layoutSubviews() { }
    /// Lays out this view and every view below it.
    void layoutIfNeeded();

    /// Runs the block at once, and shows the changes that it makes over that many seconds.
    static void animateWithDuration_animations(double seconds, const std::function<void()>& animations);

private:
    /// The view is this one or stands somewhere below it.
    bool holds(const UIView& view) const;

    CGRect _frame;
    long _tag = 0;
    float _alpha = 1;
    bool _hidden = false;
    bool _clipsToBounds = false;
    bool _userInteractionEnabled = true;
    std::optional<UIColor> _backgroundColor;
    std::optional<UIColor> _tintColor;
    CALayer _layer;
    std::weak_ptr<UIView> _superview;
    std::vector<std::shared_ptr<UIView>> _subviews;
};
