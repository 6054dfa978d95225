#include "SecondTaps.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointerEvent>
#include <QStyleHints>

#include <utility>

namespace {

/// As far apart as two taps of a thumb may lie that are meant for one thing.
constexpr double reach = 24;

bool isActivation(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
}

} // namespace

bool SecondTaps::swallows(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        return swallowsPress(static_cast<const QPointerEvent&>(event));
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::TouchUpdate:
        return _swallowing;
    case QEvent::MouseButtonRelease:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return std::exchange(_swallowing, false);
    case QEvent::KeyPress:
        return swallowsKey(static_cast<const QKeyEvent&>(event));
    default:
        return false;
    }
}

bool SecondTaps::swallowsPress(const QPointerEvent& event)
{
    const Tap tap { static_cast<qint64>(event.timestamp()), event.points().constFirst().position(), _scene };
    _swallowing = isSecond(std::exchange(_press, tap), tap);
    return _swallowing;
}

bool SecondTaps::swallowsKey(const QKeyEvent& event)
{
    if (!isActivation(event.key()))
        return false;
    if (event.isAutoRepeat())
        return true;
    const Tap tap { static_cast<qint64>(event.timestamp()), {}, _scene };
    return isSecond(std::exchange(_key, tap), tap);
}

bool SecondTaps::isSecond(const std::optional<Tap>& first, const Tap& tap) const
{
    if (!first || first->scene == tap.scene)
        return false;
    const QPointF apart = tap.position - first->position;
    return tap.milliseconds - first->milliseconds < QGuiApplication::styleHints()->mouseDoubleClickInterval()
        && QPointF::dotProduct(apart, apart) <= reach * reach;
}
