#include "Glyph.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr double ownLineWidth = 2.2;

/// In a square of one by one.
QPainterPath pathOf(Glyph::Shape shape)
{
    QPainterPath path;
    switch (shape) {
    case Glyph::Shape::Back:
        path.moveTo(0.68, 0.06);
        path.lineTo(0.24, 0.5);
        path.lineTo(0.68, 0.94);
        break;
    case Glyph::Shape::Forward:
        path.moveTo(0.3, 0.06);
        path.lineTo(0.74, 0.5);
        path.lineTo(0.3, 0.94);
        break;
    case Glyph::Shape::Share:
        path.moveTo(0.5, 0.64);
        path.lineTo(0.5, 0.05);
        path.moveTo(0.3, 0.24);
        path.lineTo(0.5, 0.05);
        path.lineTo(0.7, 0.24);
        path.moveTo(0.33, 0.38);
        path.lineTo(0.16, 0.38);
        path.lineTo(0.16, 0.96);
        path.lineTo(0.84, 0.96);
        path.lineTo(0.84, 0.38);
        path.lineTo(0.67, 0.38);
        break;
    case Glyph::Shape::Checkmark:
        path.moveTo(0.08, 0.55);
        path.lineTo(0.36, 0.84);
        path.lineTo(0.92, 0.14);
        break;
    }
    return path;
}

} // namespace

Glyph::Glyph(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void Glyph::setShape(Shape shape)
{
    _shape = shape;
    update();
    emit changed();
}

void Glyph::setColor(const QColor& color)
{
    _color = color;
    update();
    emit changed();
}

void Glyph::setMirrored(bool mirrored)
{
    _mirrored = mirrored;
    update();
    emit changed();
}

void Glyph::draw(
    QPainter& painter, Shape shape, const QRectF& frame, const QColor& color, double lineWidth, bool mirrored)
{
    const double side = std::min(frame.width(), frame.height()) - lineWidth;
    QTransform place;
    place.translate(frame.center().x(), frame.center().y());
    place.scale(mirrored ? -side : side, side);
    place.translate(-0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(place.map(pathOf(shape)));
    painter.restore();
}

void Glyph::paint(QPainter* painter)
{
    draw(*painter, _shape, boundingRect(), _color, ownLineWidth, _mirrored);
}
