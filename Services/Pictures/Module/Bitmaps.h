#pragma once

#include "Phone/Images.h"

#include <QImage>

/// Between the phone's pixels and Qt's.

/// A bitmap of that size, transparent.
Bitmap emptyBitmap(const QSize& size);

/// Puts the pixels of an image of the bitmap's size into it, a few rows at a time. The image may lie on the bitmap's
/// own memory.
void takePixels(Bitmap& bitmap, const QImage& image);

/// Null for a null image.
std::shared_ptr<const Bitmap> bitmapOf(const QImage& image);

/// An image on the bitmap's own pixels; null when the bitmap does not have as many as it says.
QImage imageOf(const Bitmap& bitmap);
