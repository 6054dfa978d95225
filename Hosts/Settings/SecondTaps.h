#pragma once

#include <QPointF>

#include <optional>

class QEvent;
class QKeyEvent;
class QPointerEvent;

/// Keeps from the window the second half of a double click, double tap or double Enter whose first half has brought up
/// another page or sheet: it was meant for what was there before. A key that is held down works nothing more, either.
class SecondTaps {
public:
    /// True for an event that the window is not to get.
    bool swallows(const QEvent& event);
    /// Called when another page or sheet has come up, or one has gone.
    void noteNewScene() { ++_scene; }

private:
    struct Tap {
        qint64 milliseconds;
        QPointF position;
        unsigned scene;
    };

    bool swallowsPress(const QPointerEvent& event);
    bool swallowsKey(const QKeyEvent& event);
    /// Whether it follows the one before closely, and something else stands there now.
    bool isSecond(const std::optional<Tap>& first, const Tap& tap) const;

    std::optional<Tap> _press;
    std::optional<Tap> _key;
    unsigned _scene = 0;
    /// The press was swallowed, and so is what belongs to it.
    bool _swallowing = false;
};
