#pragma once

#include "SettingsHost.h"

#include <QQuickView>

/// The window of the Settings application.
class SettingsWindow final : public QQuickView {
    Q_OBJECT
public:
    explicit SettingsWindow(std::shared_ptr<SettingsHost> host);
    ~SettingsWindow() override;

    SettingsHost& host() { return *_host; }

private:
    std::shared_ptr<SettingsHost> _host;
};
