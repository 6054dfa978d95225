#pragma once

#include "Linux/BusCaller.h"
#include "Phone/Appearance.h"

#include <QDBusVariant>
#include <QObject>

#include <functional>

/// The appearance and the text size that the user chose for the desktop, by way of the settings portal, followed as
/// they change. Light and of the usual size while there is no portal; one that comes later is read then.
class PortalAppearance final : public QObject, public Appearance {
    Q_OBJECT
public:
    explicit PortalAppearance(BusCaller sessionBus);

    /// Called from the event loop of the main thread after either has changed.
    void setObserver(std::function<void()> observer) { _observer = std::move(observer); }

    // Appearance
    bool isDark() const override { return _isDark; }
    double textScale() const override { return _textScale; }

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void portalAppeared();

private:
    /// True when it is another value than before.
    bool take(const QString& key, const QVariant& value);
    void readLater(const QDBusMessage& request, const QString& key);

    BusCaller _bus;
    bool _isDark = false;
    double _textScale = 1;
    std::function<void()> _observer;
};
