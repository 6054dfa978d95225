#pragma once

#include "PreferencesUI/PSTableCell.h"
#include "Theme.h"

#include <QRectF>

class QPainter;

/// How the controls of a row look. Places are those of the control's frame on the screen.
namespace ControlPainter {

/// `position` is the knob's, from 0 (off) to 1 (on), so that it can be on its way.
void drawSwitch(QPainter& painter, const UISwitch& control, const QRectF& frame, double position, const Theme& theme);
void drawSlider(
    QPainter& painter, const UISlider& control, const QRectF& frame, const QColor& valueColor, const Theme& theme);

/// The part of the slider in which the thumb's middle moves.
QRectF thumbTravel(const UISlider& control, const QRectF& frame, bool mirrored);
/// The value that the slider has when its thumb is there.
float valueAt(const UISlider& control, const QRectF& frame, double x, bool mirrored);
double thumbX(const UISlider& control, const QRectF& frame, bool mirrored);

inline constexpr double thumbDiameter = 28;

} // namespace ControlPainter
