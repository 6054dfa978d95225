#pragma once

#include "Driver/Json.h"
#include "PageRowItem.h"
#include "SettingsWindow.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Counts what the pages post, and passes it on.
class PostedNotifications final : public DarwinNotifications {
public:
    explicit PostedNotifications(std::shared_ptr<DarwinNotifications> next)
        : _next(std::move(next))
    {
    }
    const std::vector<std::string>& names() const { return _names; }

    // DarwinNotifications
    void post(const std::string& name) override
    {
        _names.push_back(name);
        _next->post(name);
    }
    void addObserver(const std::string& name, Handler handler) override
    {
        _next->addObserver(name, std::move(handler));
    }

private:
    std::shared_ptr<DarwinNotifications> _next;
    std::vector<std::string> _names;
};

/// The driver, another process on a phone of its own, to which the same is done.
class Driver {
public:
    explicit Driver(const QString& root);
    ~Driver();
    Json ask(const Json& request);

private:
    QProcess _process;
};

/// A window over a demo phone in a folder of its own.
class WindowTest : public testing::Test {
protected:
    enum class Motion { Shown, Reduced };

    WindowTest() { EXPECT_TRUE(_root.isValid()); }

    void openWindow(Motion motion = Motion::Reduced);
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

    QTemporaryDir _root;
    std::shared_ptr<PostedNotifications> _posted;
    std::unique_ptr<SettingsWindow> _window;
};

/// Has the window do all that waits to be done.
void settle();
