#pragma once

#include "PageRowItem.h"

#include <QQuickWindow>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

enum class Device { Mouse, Touch, Keyboard };

/// A user's hand, on one device. What it cannot do there fails the test.
class Hand {
public:
    static std::unique_ptr<Hand> on(Device device, QQuickWindow& window);
    virtual ~Hand() = default;

    /// Presses what is in the middle of the item: a row, a button, a photo.
    virtual void press(QQuickItem& item) = 0;
    /// Turns the row's switch.
    virtual void turn(PageRowItem& row) = 0;
    /// Moves the row's slider there, and lets it go.
    virtual void slide(PageRowItem& row, double value) = 0;

protected:
    explicit Hand(QQuickWindow& window)
        : _window(window)
    {
    }
    QPoint inWindow(const QQuickItem& item, const QPointF& place) const { return item.mapToScene(place).toPoint(); }

    QQuickWindow& _window;
};

/// The names of the devices, for tests that are done on each.
std::string nameOf(const testing::TestParamInfo<Device>& device);
void PrintTo(Device device, std::ostream* stream);

/// The one touch screen of the process.
QPointingDevice* touchScreen();

/// Brings the keyboard's focus to the item by Tab, and in lists by the arrows. False when it never comes there.
bool reachByKeys(QQuickWindow& window, const QQuickItem& item);

/// The first item that can be seen and worked and is what is wanted; null for none.
QQuickItem* findItem(QQuickItem* below, const std::function<bool(const QQuickItem&)>& isWanted);
/// The button with that text or, on the bar, that name; null for none that can be worked.
QQuickItem* findButton(QQuickItem* below, const QString& text);
