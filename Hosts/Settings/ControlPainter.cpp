#include "ControlPainter.h"

#include "TextBlock.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr double knobInset = 2;
constexpr double shadowOffset = 1.5;
constexpr double trackHeight = 4;
constexpr double stepHeight = 10;
constexpr double stepWidth = 1.5;
constexpr double valuePoints = 17;
constexpr double disabledOpacity = 0.5;
const QColor knobColor(0xFF, 0xFF, 0xFF);
const QColor knobEdge(0, 0, 0, 26);
const QColor knobShadow(0, 0, 0, 38);

QColor between(const QColor& from, const QColor& to, double position)
{
    const auto mixed = [position](float a, float b) { return a + (b - a) * static_cast<float>(position); };
    return QColor::fromRgbF(mixed(from.redF(), to.redF()), mixed(from.greenF(), to.greenF()),
        mixed(from.blueF(), to.blueF()), mixed(from.alphaF(), to.alphaF()));
}

void drawKnob(QPainter& painter, const QPointF& middle, double diameter)
{
    QRectF knob(0, 0, diameter, diameter);
    knob.moveCenter(middle);
    painter.setPen(Qt::NoPen);
    painter.setBrush(knobShadow);
    painter.drawEllipse(knob.translated(0, shadowOffset));
    painter.setPen(QPen(knobEdge, 0.5));
    painter.setBrush(knobColor);
    painter.drawEllipse(knob);
}

void drawTrack(QPainter& painter, const QRectF& track, const QColor& color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
}

QRectF trackFrame(const UISlider& control, const QRectF& frame, bool mirrored)
{
    const auto* segmentable = dynamic_cast<const PSSegmentableSlider*>(&control);
    if (!segmentable)
        return frame;
    const CGRect track = segmentable->trackRectForBounds(control.bounds());
    const double left = mirrored ? frame.width() - track.maxX() : track.x;
    return { frame.left() + left, frame.top() + track.y, track.width, track.height };
}

void drawSteps(QPainter& painter, const QRectF& travel, long count, const QColor& color)
{
    for (long i = 0; count > 0 && i <= count; ++i) {
        const double x = travel.left() + travel.width() * static_cast<double>(i) / static_cast<double>(count);
        painter.fillRect(QRectF(x - stepWidth / 2, travel.center().y() - stepHeight / 2, stepWidth, stepHeight), color);
    }
}

void drawValue(
    QPainter& painter, const PSSegmentableSlider& slider, const QRectF& frame, const QColor& color, const Theme& theme)
{
    const CGRect rect = slider.valueTextRectForBounds(slider.bounds());
    const double left = theme.isMirrored() ? frame.width() - rect.maxX() : rect.x;
    const QRectF place(frame.left() + left, frame.top() + rect.y, rect.width, rect.height);
    TextBlock text { QString::fromStdString(slider.valueText()), theme.font(valuePoints), 1 };
    // The place is the cell's and does not grow with the text size, so the largest texts are drawn to fit.
    const QSizeF size = text.size(0);
    const double fitting = std::min({ 1.0, place.width() / size.width(), place.height() / size.height() });
    text.font.setPixelSize(std::max(1, static_cast<int>(text.font.pixelSize() * fitting)));
    painter.setPen(color);
    text.draw(painter, place, theme.isMirrored() ? Qt::AlignLeft : Qt::AlignRight);
}

} // namespace

void ControlPainter::drawSwitch(
    QPainter& painter, const UISwitch& control, const QRectF& frame, double position, const Theme& theme)
{
    if (frame.isEmpty())
        return;
    painter.save();
    if (!control.isEnabled())
        painter.setOpacity(painter.opacity() * disabledOpacity);
    const QColor on = control.onTintColor() ? colorOf(*control.onTintColor()) : theme.switchOnColor();
    drawTrack(painter, frame, between(theme.switchOffColor(), on, position));
    const double diameter = frame.height() - 2 * knobInset;
    const double travel = frame.width() - frame.height();
    const double along = theme.isMirrored() ? 1 - position : position;
    drawKnob(painter, { frame.left() + frame.height() / 2 + travel * along, frame.center().y() }, diameter);
    painter.restore();
}

void ControlPainter::drawSlider(
    QPainter& painter, const UISlider& control, const QRectF& frame, const QColor& valueColor, const Theme& theme)
{
    painter.save();
    if (!control.isEnabled())
        painter.setOpacity(painter.opacity() * disabledOpacity);
    const QRectF whole = trackFrame(control, frame, theme.isMirrored());
    const QRectF track(whole.left(), whole.center().y() - trackHeight / 2, whole.width(), trackHeight);
    const QRectF travel = thumbTravel(control, frame, theme.isMirrored());
    const double thumb = thumbX(control, frame, theme.isMirrored());
    const auto* segmentable = dynamic_cast<const PSSegmentableSlider*>(&control);
    if (segmentable)
        drawSteps(painter, travel, segmentable->segmentCount(), theme.accessoryColor());
    drawTrack(painter, track, theme.accessoryColor());
    QRectF filled = track;
    if (theme.isMirrored())
        filled.setLeft(thumb);
    else
        filled.setRight(thumb);
    drawTrack(painter, filled, control.tintColor() ? colorOf(*control.tintColor()) : theme.tintColor());
    drawKnob(painter, { thumb, track.center().y() }, thumbDiameter);
    if (segmentable && segmentable->showsValue())
        drawValue(painter, *segmentable, frame, valueColor, theme);
    painter.restore();
}

QRectF ControlPainter::thumbTravel(const UISlider& control, const QRectF& frame, bool mirrored)
{
    const QRectF track = trackFrame(control, frame, mirrored);
    const double inset = std::min(thumbDiameter, track.width()) / 2;
    return track.adjusted(inset, 0, -inset, 0);
}

double ControlPainter::thumbX(const UISlider& control, const QRectF& frame, bool mirrored)
{
    const QRectF travel = thumbTravel(control, frame, mirrored);
    const float range = control.maximumValue() - control.minimumValue();
    const double along = range > 0 ? double { (control.value() - control.minimumValue()) / range } : 0;
    return travel.left() + travel.width() * (mirrored ? 1 - along : along);
}

float ControlPainter::valueAt(const UISlider& control, const QRectF& frame, double x, bool mirrored)
{
    const QRectF travel = thumbTravel(control, frame, mirrored);
    if (travel.width() <= 0)
        return control.minimumValue();
    const double along = std::clamp((x - travel.left()) / travel.width(), 0.0, 1.0);
    const double part = mirrored ? 1 - along : along;
    return control.minimumValue() + static_cast<float>(part) * (control.maximumValue() - control.minimumValue());
}
