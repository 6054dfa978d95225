#pragma once

#include "Hand.h"
#include "WindowTest.h"

/// A window and the driver, another process, each on a phone of its own that begins like the other. What is done to
/// both must leave both with the same: what happened, in order, the rows and their cells, and the files of the phone.
class SameStepsTest : public WindowTest {
protected:
    SameStepsTest();

    /// Opens both.
    void begin();
    /// The window is worked, and the driver is asked for the same.
    void step(const std::string& name, const std::function<void()>& work, const Json& request);
    /// What only the window has, as an alert's button: that alone happens, and nothing else changes.
    void ownStep(const std::string& name, const std::function<void()>& work, const Json& events);

    Json tapRequest(const QString& identifier) const;
    QQuickItem* button(const QString& text) { return findButton(_window->rootObject(), text); }

    QTemporaryDir _driverRoot;
    std::unique_ptr<Driver> _driver;

private:
    void compare(const std::string& name, const Json& events);
    void compareRows(const std::string& name);
    /// Has the driver make all cells of the page, as a window does that shows them.
    Json driverCells(std::size_t rows, Json& events);
    void compareFiles(const std::string& name);
};
