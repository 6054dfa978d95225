#include "ViewPainter.h"

#include "Picture.h"
#include "TextBlock.h"

#include <QPainter>
#include <QPainterPath>

QRectF ViewPainter::placed(const CGRect& frame, const QRectF& within, bool mirrored)
{
    const double left = mirrored ? within.width() - frame.maxX() : frame.x;
    return { within.left() + left, within.top() + frame.y, frame.width, frame.height };
}

void ViewPainter::drawSubviews(const UIView& view, const QRectF& frame)
{
    for (const auto& subview : view.subviews())
        draw(*subview, placed(subview->frame(), frame, _theme.isMirrored()));
}

void ViewPainter::draw(const UIView& view, const QRectF& frame)
{
    if (view.isHidden() || view.alpha() <= 0)
        return;
    _painter.save();
    _painter.setOpacity(_painter.opacity() * double { view.alpha() });
    if (view.clipsToBounds()) {
        QPainterPath shape;
        shape.addRoundedRect(frame, view.layer().cornerRadius, view.layer().cornerRadius);
        _painter.setClipPath(shape, Qt::IntersectClip);
    }
    drawContent(view, frame);
    if (_visitor)
        _visitor(view, frame);
    drawSubviews(view, frame);
    _painter.restore();
}

void ViewPainter::drawContent(const UIView& view, const QRectF& frame)
{
    if (view.backgroundColor() && view.backgroundColor()->alpha > 0) {
        _painter.setPen(Qt::NoPen);
        _painter.setBrush(colorOf(*view.backgroundColor()));
        _painter.drawRoundedRect(frame, view.layer().cornerRadius, view.layer().cornerRadius);
    }
    if (const auto* label = dynamic_cast<const UILabel*>(&view))
        drawLabel(_painter, *label, frame, _theme, _theme.isMirrored());
    else if (const auto* picture = dynamic_cast<const UIImageView*>(&view))
        drawImage(*picture, frame);
}

void ViewPainter::drawImage(const UIImageView& view, const QRectF& frame)
{
    if (!view.image() || frame.isEmpty())
        return;
    QImage image = imageOf(*view.image());
    if (image.isNull())
        return;
    if (view.image()->renderingMode() == UIImageRenderingMode::AlwaysTemplate)
        image = templateOf(image, view.tintColor() ? colorOf(*view.tintColor()) : _theme.tintColor());
    _painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // Stretched to the frame, as an image view does that is told nothing else.
    _painter.drawImage(frame, image);
}
