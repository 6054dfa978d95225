#pragma once

#include "Theme.h"
#include "UIKit/UITableViewCell.h"

#include <QRectF>

#include <functional>
#include <vector>

class QPainter;

/// Draws a tree of views as it is: every frame where the layout put it, colours, alpha, corners, clipping, pictures,
/// texts and tint from the views themselves. Only the reading direction may mirror the places.
class ViewPainter {
public:
    /// A view, and where it is on the screen in the points of the tree's root.
    using Visitor = std::function<void(const UIView& view, const QRectF& frame)>;

    ViewPainter(QPainter& painter, const Theme& theme)
        : _painter(painter)
        , _theme(theme)
    {
    }
    /// Told of each view that was drawn, after its own content and before its subviews; controls draw themselves here.
    void setVisitor(Visitor visitor) { _visitor = std::move(visitor); }

    /// The subviews of a view whose own rectangle is `frame`.
    void drawSubviews(const UIView& view, const QRectF& frame);
    void draw(const UIView& view, const QRectF& frame);

    /// Where a subview with that frame is, in a superview that lies there.
    static QRectF placed(const CGRect& frame, const QRectF& within, bool mirrored);

private:
    void drawContent(const UIView& view, const QRectF& frame);
    void drawImage(const UIImageView& view, const QRectF& frame);

    QPainter& _painter;
    const Theme& _theme;
    Visitor _visitor;
};
