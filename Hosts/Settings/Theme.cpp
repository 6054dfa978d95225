#include "Theme.h"

#include "Phone/Appearance.h"
#include "UIKit/UIFont.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace {

constexpr double greatestTextScale = 2;
constexpr double usualDpi = 96;
/// The first of these that is installed shows the system font; the last is always there.
const QStringList systemFamilies { QStringLiteral("Inter"), QStringLiteral("Cantarell"), QStringLiteral("Noto Sans"),
    QStringLiteral("DejaVu Sans"), QStringLiteral("sans-serif") };

/// How much larger than usual the toolkit was told to make texts, where desktops say it so.
double toolkitTextScale()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInch() / usualDpi : 1;
}

} // namespace

void Theme::follow(const Appearance& appearance)
{
    setDark(appearance.isDark());
    if (_following.textScale)
        setTextScale(std::max(appearance.textScale(), toolkitTextScale()));
    if (_following.motion)
        setAnimated(!appearance.isMotionReduced());
}

template <class T>
void Theme::change(T& current, T wanted)
{
    if (std::exchange(current, wanted) != wanted)
        emit changed();
}

void Theme::setDark(bool dark)
{
    change(_dark, dark);
}

void Theme::setMirrored(bool mirrored)
{
    change(_mirrored, mirrored);
}

void Theme::setAnimated(bool animated)
{
    change(_animated, animated);
}

void Theme::setShowsFocus(bool shows)
{
    if (std::exchange(_showsFocus, shows) != shows)
        emit showsFocusChanged();
}

void Theme::setTextScale(double scale)
{
    change(_textScale, std::clamp(scale, 1.0, greatestTextScale));
}

QColor Theme::pageColor() const
{
    return _dark ? QColor(0x00, 0x00, 0x00) : QColor(0xF2, 0xF2, 0xF7);
}

QColor Theme::cardColor() const
{
    return _dark ? QColor(0x1C, 0x1C, 0x1E) : QColor(0xFF, 0xFF, 0xFF);
}

QColor Theme::pressedColor() const
{
    return _dark ? QColor(0x3A, 0x3A, 0x3C) : QColor(0xD1, 0xD1, 0xD6);
}

QColor Theme::textColor() const
{
    return _dark ? QColor(0xFF, 0xFF, 0xFF) : QColor(0x00, 0x00, 0x00);
}

QColor Theme::secondaryTextColor() const
{
    return _dark ? QColor(0x98, 0x98, 0x9F) : QColor(0x6A, 0x6A, 0x70);
}

QColor Theme::separatorColor() const
{
    return _dark ? QColor(0x48, 0x48, 0x4A) : QColor(0xC6, 0xC6, 0xC8);
}

QColor Theme::accessoryColor() const
{
    return _dark ? QColor(0x78, 0x78, 0x7D) : QColor(0x90, 0x90, 0x96);
}

QColor Theme::tintColor() const
{
    return _dark ? QColor(0x4D, 0x9B, 0xFF) : QColor(0x00, 0x66, 0xE0);
}

QColor Theme::destructiveColor() const
{
    return _dark ? QColor(0xFF, 0x6B, 0x61) : QColor(0xD7, 0x26, 0x1C);
}

QColor Theme::focusColor() const
{
    return _dark ? QColor(0xFF, 0xD6, 0x0A) : QColor(0xE0, 0x6A, 0x00);
}

QColor Theme::switchOnColor() const
{
    return _dark ? QColor(0x30, 0xD1, 0x58) : QColor(0x34, 0xC7, 0x59);
}

QColor Theme::switchOffColor() const
{
    return _dark ? QColor(0x39, 0x39, 0x3D) : QColor(0xE2, 0xE2, 0xE5);
}

QFont Theme::font(double points, bool bold) const
{
    QFont font = fontFor(UIFont::systemFontOfSize(points));
    if (bold)
        font.setWeight(QFont::DemiBold);
    return font;
}

QFont Theme::fontFor(const UIFont& font) const
{
    QFont result;
    result.setFamilies(systemFamilies);
    if (font.name.ends_with("-Light"))
        result.setWeight(QFont::Light);
    // Whole pixels, so that what was measured is what is drawn.
    result.setPixelSize(std::max(1, qRound(font.pointSize * _textScale)));
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

QColor colorOf(const UIColor& color)
{
    return QColor::fromRgbF(std::clamp(color.red, 0.0F, 1.0F), std::clamp(color.green, 0.0F, 1.0F),
        std::clamp(color.blue, 0.0F, 1.0F), std::clamp(color.alpha, 0.0F, 1.0F));
}
