#pragma once

#include "Phone/Images.h"

#include <cstddef>
#include <optional>

/// What can be said of a picture file without decoding it: its format, and whether a decoder would take far more time
/// or memory over it than over an honest picture of its size.

enum class PictureFormat { None, Png, Jpeg, Gif, Bmp };

/// By the first bytes.
PictureFormat formatOfPicture(const Bytes& file);

/// The size of a PNG file that is whole: all its chunks lie within the file and the last one is there. Nothing for any
/// other file.
std::optional<PixelSize> sizeOfPng(const Bytes& file);

/// The size of a GIF picture whose first frame lies within it. Nothing for any other file.
std::optional<PixelSize> sizeOfGif(const Bytes& file);

/// The whole PNG file without the chunks that make no pixels. Texts and colour profiles may unfold to gigabytes.
Bytes withoutNotes(const Bytes& png);

/// How many bytes the texts and colour profiles of the whole PNG file take.
std::size_t lengthOfNotes(const Bytes& png);

/// What a decoder keeps of a JPEG file beside its pixels, in bytes: the coefficients of a picture that comes in several
/// scans; 0 for any other file.
std::size_t coefficientBytes(const Bytes& file);

/// False for a PNG that is not whole, a JPEG of more scans than any camera writes, and a GIF whose first frame is
/// larger than the picture; and for a file of no known format.
bool isHarmlessPicture(const Bytes& file);

/// Starts as SVG does.
bool isDrawing(const Bytes& file);

/// False for an SVG drawing that may take absurdly long to draw: one of more than 32 kilobytes, a shorter one that uses
/// parts of itself over and over, and one with elements that a few bytes make large.
bool isHarmlessDrawing(const Bytes& file);
