#include "Hand.h"

#include "WindowTest.h"

#include <QTest>

#include <cmath>
#include <ostream>

namespace {

/// More than any page or sheet has stops.
constexpr int mostStops = 60;
constexpr int dragStep = 4;

/// Where the thumb of the row's slider is for a value.
QPointF placeOfValue(const PageRowItem& row, double value)
{
    const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(row.cell());
    const auto slider = std::dynamic_pointer_cast<PSSegmentableSlider>(cell->control());
    const CGRect track = slider->trackRectForBounds(slider->frame());
    const double diameter = row.thumbFrame().width();
    const double part = (value - row.minimumValue()) / (row.maximumValue() - row.minimumValue());
    return { track.x + diameter / 2 + part * (track.width - diameter), row.thumbFrame().center().y() };
}

/// What the mouse and the finger have in common.
class Pointer : public Hand {
public:
    void press(QQuickItem& item) override { pressAt(inWindow(item, item.boundingRect().center())); }
    void turn(PageRowItem& row) override { pressAt(inWindow(row, row.controlFrame().center())); }
    void slide(PageRowItem& row, double value) override
    {
        const QPoint from = inWindow(row, row.thumbFrame().center());
        const QPoint to = inWindow(row, placeOfValue(row, value));
        down(from);
        const int direction = to.x() < from.x() ? -1 : 1;
        for (int x = from.x(); std::abs(to.x() - x) > dragStep; x += direction * dragStep)
            move({ x, from.y() });
        move(to);
        up(to);
        settle();
    }

protected:
    using Hand::Hand;
    virtual void down(QPoint place) = 0;
    virtual void move(QPoint place) = 0;
    virtual void up(QPoint place) = 0;

private:
    void pressAt(QPoint place)
    {
        down(place);
        up(place);
        settle();
    }
};

class Mouse final : public Pointer {
public:
    explicit Mouse(QQuickWindow& window)
        : Pointer(window)
    {
    }

protected:
    void down(QPoint place) override { QTest::mousePress(&_window, Qt::LeftButton, {}, place); }
    void move(QPoint place) override { QTest::mouseMove(&_window, place); }
    void up(QPoint place) override { QTest::mouseRelease(&_window, Qt::LeftButton, {}, place); }
};

class Finger final : public Pointer {
public:
    explicit Finger(QQuickWindow& window)
        : Pointer(window)
    {
    }

protected:
    void down(QPoint place) override { QTest::touchEvent(&_window, touchScreen()).press(0, place, &_window); }
    void move(QPoint place) override { QTest::touchEvent(&_window, touchScreen()).move(0, place, &_window); }
    void up(QPoint place) override { QTest::touchEvent(&_window, touchScreen()).release(0, place, &_window); }
};

class Keyboard final : public Hand {
public:
    explicit Keyboard(QQuickWindow& window)
        : Hand(window)
    {
    }

    void press(QQuickItem& item) override { keyAt(item, Qt::Key_Return); }
    void turn(PageRowItem& row) override { keyAt(row, Qt::Key_Space); }
    void slide(PageRowItem& row, double value) override
    {
        if (!reachByKeys(_window, row)) {
            ADD_FAILURE() << "the slider cannot be reached";
            return;
        }
        const Qt::Key key = value < row.value() ? Qt::Key_Left : Qt::Key_Right;
        const int steps = static_cast<int>(std::lround(std::abs(value - row.value()) / row.stepSize()));
        for (int step = 0; step < steps; ++step)
            QTest::keyPress(&_window, key);
        QTest::keyRelease(&_window, key);
        settle();
    }

private:
    void keyAt(const QQuickItem& item, Qt::Key key)
    {
        if (!reachByKeys(_window, item)) {
            ADD_FAILURE() << item.metaObject()->className() << " cannot be reached";
            return;
        }
        QTest::keyClick(&_window, key);
        settle();
    }
};

/// The list or grid that the item is an entry of; null for another item.
QQuickItem* viewOf(const QQuickItem& item)
{
    for (QQuickItem* above = item.parentItem(); above; above = above->parentItem()) {
        if (above->inherits("QQuickItemView"))
            return above;
    }
    return nullptr;
}

bool reachByTab(QQuickWindow& window, const QQuickItem& item)
{
    for (int stop = 0; stop < mostStops && !item.hasActiveFocus(); ++stop)
        QTest::keyClick(&window, Qt::Key_Tab);
    return item.hasActiveFocus();
}

bool reachByArrows(QQuickWindow& window, const QQuickItem& item, const QQuickItem& view)
{
    // Upwards or backwards to the first entry, and from there on.
    const bool isGrid = view.inherits("QQuickGridView");
    const auto go = [&](Qt::Key key) {
        for (int stop = 0; stop < mostStops && !item.hasActiveFocus(); ++stop) {
            const int before = view.property("currentIndex").toInt();
            QTest::keyClick(&window, key);
            if (view.property("currentIndex").toInt() == before)
                break;
        }
    };
    go(isGrid ? Qt::Key_Left : Qt::Key_Up);
    go(isGrid ? Qt::Key_Right : Qt::Key_Down);
    return item.hasActiveFocus();
}

} // namespace

std::unique_ptr<Hand> Hand::on(Device device, QQuickWindow& window)
{
    switch (device) {
    case Device::Mouse:
        return std::make_unique<Mouse>(window);
    case Device::Touch:
        return std::make_unique<Finger>(window);
    default:
        return std::make_unique<Keyboard>(window);
    }
}

std::string nameOf(const testing::TestParamInfo<Device>& device)
{
    switch (device.param) {
    case Device::Mouse:
        return "Mouse";
    case Device::Touch:
        return "Touch";
    default:
        return "Keyboard";
    }
}

void PrintTo(Device device, std::ostream* stream)
{
    *stream << nameOf(testing::TestParamInfo<Device>(device, 0));
}

QPointingDevice* touchScreen()
{
    static QPointingDevice* const screen = QTest::createTouchDevice();
    return screen;
}

bool reachByKeys(QQuickWindow& window, const QQuickItem& item)
{
    if (const QQuickItem* view = viewOf(item)) {
        const auto isInView = [view](const QQuickItem* focused) { return focused && view->isAncestorOf(focused); };
        for (int stop = 0; stop < mostStops && !isInView(window.activeFocusItem()); ++stop) {
            if (view->hasActiveFocus())
                break;
            QTest::keyClick(&window, Qt::Key_Tab);
        }
        return reachByArrows(window, item, *view);
    }
    return reachByTab(window, item);
}

QQuickItem* findItem(QQuickItem* below, const std::function<bool(const QQuickItem&)>& isWanted)
{
    if (!below->isVisible() || !below->isEnabled())
        return nullptr;
    if (isWanted(*below))
        return below;
    for (QQuickItem* child : below->childItems()) {
        if (QQuickItem* found = findItem(child, isWanted))
            return found;
    }
    return nullptr;
}

QQuickItem* findButton(QQuickItem* below, const QString& text)
{
    return findItem(below, [&](const QQuickItem& item) {
        if (item.metaObject()->indexOfSignal("activated()") < 0)
            return false;
        return item.property("name").toString() == text || item.property("text").toString() == text;
    });
}
