#pragma once

#include "Phone/TextMeasure.h"
#include "Theme.h"
#include "UIKit/UILabel.h"

#include <QPointer>

class QPainter;
class QRectF;

/// A text in one font: the one place where lines are broken, for measuring and for drawing alike.
struct TextBlock {
    QString text;
    QFont font;
    /// 0 for as many as the text needs; what does not fit ends in an ellipsis.
    long lines = 0;

    /// The size within that width, 0 for no limit.
    QSizeF size(double width) const;
    /// Draws in the painter's pen, centred vertically, as a label does.
    void draw(QPainter& painter, const QRectF& frame, Qt::Alignment alignment) const;
};

/// Draws the label's text, plain or attributed, into the frame. `mirrored` for languages that run right to left.
void drawLabel(QPainter& painter, const UILabel& label, const QRectF& frame, const Theme& theme, bool mirrored);

/// Measures with the fonts of the theme, at its text size.
class QtTextMeasure final : public TextMeasure {
public:
    explicit QtTextMeasure(const Theme& theme)
        : _theme(&theme)
    {
    }

    // TextMeasure
    TextSize measure(
        const std::string& text, const std::string& fontName, double fontSize, double width) const override;

private:
    /// Null once the window is gone, as the phone lives on.
    QPointer<const Theme> _theme;
};
