#pragma once

#include "UIKit/UIImage.h"

#include <QImage>

class QColor;

/// The picture's pixels; a null image when they cannot be decoded. Kept for as long as the picture lives.
QImage imageOf(const UIImage& picture);
/// The picture's shape in one colour, as a template picture is drawn.
QImage templateOf(const QImage& image, const QColor& color);
/// A picture of one pixel a point; null for a null image.
std::shared_ptr<UIImage> pictureOf(const QImage& image);
