#include "UIKit/UIView.h"

#include "UIKit/UIViewAnimation.h"

#include <algorithm>

NS_IMPLEMENTATION(UIView, NS_METHOD(layoutSubviews))

UIView::~UIView() = default;

std::shared_ptr<UIView> UIView::viewWithTag(long tag)
{
    if (_tag == tag)
        return self();
    for (const auto& view : _subviews) {
        if (auto found = view->viewWithTag(tag))
            return found;
    }
    return nullptr;
}

void UIView::setAlpha(float alpha)
{
    UIViewAnimations::shared().alphaWillChange(*this, alpha);
    _alpha = alpha;
}

void UIView::addSubview(const std::shared_ptr<UIView>& view)
{
    if (!view || view->holds(*this))
        return;
    view->removeFromSuperview();
    _subviews.push_back(view);
    view->_superview = self();
}

bool UIView::holds(const UIView& view) const
{
    if (&view == this)
        return true;
    const auto parent = view.superview();
    return parent && holds(*parent);
}

void UIView::removeFromSuperview()
{
    const auto parent = superview();
    _superview.reset();
    if (parent)
        std::erase_if(parent->_subviews, [this](const auto& view) { return view.get() == this; });
}

void UIView::layoutIfNeeded()
{
    layoutSubviews();
    // A copy, because a view may add or remove others while it is laid out.
    const auto views = _subviews;
    for (const auto& view : views)
        view->layoutIfNeeded();
}

void UIView::animateWithDuration_animations(double seconds, const std::function<void()>& animations)
{
    UIViewAnimations::shared().run(seconds, animations);
}
