#pragma once

#include "SecondTaps.h"
#include "SettingsHost.h"

#include <QQmlEngine>
#include <QQuickView>

#include <memory>

/// The window of the Settings application.
class SettingsWindow final : public QQuickView {
    Q_OBJECT
public:
    /// An engine that has begun to load the window's files beside the calling thread, which meanwhile opens the phone.
    static std::unique_ptr<QQmlEngine> loadingEngine();

    explicit SettingsWindow(
        std::shared_ptr<SettingsHost> host, std::unique_ptr<QQmlEngine> engine = SettingsWindow::loadingEngine());
    ~SettingsWindow() override;

    SettingsHost& host() { return *_host; }

protected:
    // QWindow
    bool event(QEvent* event) override;

private:
    std::shared_ptr<SettingsHost> _host;
    SecondTaps _secondTaps;
};
