#pragma once

#include "PageRowItem.h"
#include "SettingsWindow.h"
#include "Witness.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// The driver, another process on a phone of its own, to which the same is done.
class Driver {
public:
    explicit Driver(const QString& root);
    ~Driver();
    Json ask(const Json& request);

private:
    QProcess _process;
};

/// A window over a demo phone in a folder of its own. A warning of the toolkit fails the test.
class WindowTest : public testing::Test {
protected:
    enum class Motion { Shown, Reduced };

    WindowTest();
    ~WindowTest() override;

    void openWindow(Motion motion = Motion::Reduced);
    /// With that look, on a phone some of whose services the test has exchanged; null for none.
    void openWindowOn(std::unique_ptr<Theme> theme, const HostSession::PhoneDecorator& exchange);
    void closeWindow() { _window.reset(); }
    SettingsHost& host() { return _window->host(); }
    PageModel& page() { return *host().topPage(); }
    /// Opens the page of the root page's entry with that identifier.
    void openPage(const QString& entry);
    int indexOf(const QString& identifier);
    /// The item of the top page's list that shows the row, scrolled into the window; null without one.
    PageRowItem* item(const QString& identifier);
    std::vector<PageRowItem*> items();
    QQuickItem* list();
    QPoint inWindow(const PageRowItem& item, const QPointF& place);
    QString settingsFile(const QString& root) const;
    QByteArray settings(const QString& root) const;
    std::vector<std::pair<std::string, Json>> shownRows();
    /// What was posted to the system since the events were last taken, which are taken by this.
    std::vector<std::string> takePosted();

    QTemporaryDir _root;
    /// The demo phone's file; empty for the phone that comes with the program.
    std::string _phone;
    std::shared_ptr<EventLog> _events;
    std::shared_ptr<Witness> _witness;
    std::unique_ptr<SettingsWindow> _window;
};

/// The names of the notifications among events.
std::vector<std::string> notificationsAmong(const Json& events);

/// Has every window show a frame. Items take their places when one is made, and fingers are heard once for each.
void showFrames();

/// Has the window do all that waits to be done.
void settle();
