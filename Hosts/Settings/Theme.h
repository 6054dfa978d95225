#pragma once

#include "UIKit/UIColor.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <qqmlregistration.h>

class Appearance;
struct UIFont;

/// The colours of a phone's Settings that no view carries, and how the user wants texts and movement. One a window;
/// all that paints asks it, so that a change is seen everywhere at once.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The host has the one theme of its window.")
    Q_PROPERTY(bool dark READ isDark NOTIFY changed)
    Q_PROPERTY(bool mirrored READ isMirrored NOTIFY changed)
    Q_PROPERTY(bool animated READ isAnimated NOTIFY changed)
    Q_PROPERTY(bool showsFocus READ showsFocus NOTIFY showsFocusChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed)
    Q_PROPERTY(QColor page READ pageColor NOTIFY changed)
    Q_PROPERTY(QColor card READ cardColor NOTIFY changed)
    Q_PROPERTY(QColor pressed READ pressedColor NOTIFY changed)
    Q_PROPERTY(QColor text READ textColor NOTIFY changed)
    Q_PROPERTY(QColor secondaryText READ secondaryTextColor NOTIFY changed)
    Q_PROPERTY(QColor separator READ separatorColor NOTIFY changed)
    Q_PROPERTY(QColor accessory READ accessoryColor NOTIFY changed)
    Q_PROPERTY(QColor tint READ tintColor NOTIFY changed)
    Q_PROPERTY(QColor destructive READ destructiveColor NOTIFY changed)
    Q_PROPERTY(QColor focus READ focusColor NOTIFY changed)

public:
    using QObject::QObject;

    /// What of the system's wishes the window follows: the rest was chosen for this window alone.
    struct Following {
        bool textScale = false;
        bool motion = false;
    };

    void setFollowing(Following following) { _following = following; }
    /// Takes over what the system wants, as it is now.
    void follow(const Appearance& appearance);

    bool isDark() const { return _dark; }
    void setDark(bool dark);
    bool isMirrored() const { return _mirrored; }
    void setMirrored(bool mirrored);
    /// False when the user wants reduced motion: everything is in its place at once then.
    bool isAnimated() const { return _animated; }
    void setAnimated(bool animated);
    /// True from the first key until the next touch, so that the focus is seen by those who need it.
    bool showsFocus() const { return _showsFocus; }
    void setShowsFocus(bool shows);
    /// From 1 to 2.
    double textScale() const { return _textScale; }
    void setTextScale(double scale);

    QColor pageColor() const;
    QColor cardColor() const;
    QColor pressedColor() const;
    QColor textColor() const;
    QColor secondaryTextColor() const;
    QColor separatorColor() const;
    /// Of chevrons, and of what a slider is not filled with: seen beside the texts, and not before them.
    QColor accessoryColor() const;
    QColor tintColor() const;
    QColor destructiveColor() const;
    QColor focusColor() const;
    QColor switchOnColor() const;
    QColor switchOffColor() const;

    /// A font of that many points at the user's text size.
    Q_INVOKABLE QFont font(double points, bool bold = false) const;
    QFont fontFor(const UIFont& font) const;

signals:
    void changed();
    void showsFocusChanged();

private:
    template <class T>
    void change(T& current, T wanted);

    bool _dark = false;
    bool _mirrored = false;
    bool _animated = true;
    bool _showsFocus = false;
    double _textScale = 1;
    Following _following;
};

QColor colorOf(const UIColor& color);
