#pragma once

#include "Linux/BusCaller.h"
#include "Linux/BusValues.h"

#include <QDBusVariant>
#include <QObject>

#include <functional>

/// The settings of the user's desktop, by way of the settings portal, followed as they change. None while there is no
/// portal; those of one that comes later, or answers late, are taken when they come.
class PortalSettings final : public QObject {
    Q_OBJECT
public:
    static constexpr const char* appearanceGroup = "org.freedesktop.appearance";
    static constexpr const char* interfaceGroup = "org.gnome.desktop.interface";

    /// Asks the portal; the answer is waited for when it is needed.
    explicit PortalSettings(BusCaller sessionBus);

    /// The settings of one of the groups, by key.
    QVariantMap group(const char* name);
    /// Called from the event loop of the main thread after a setting has changed.
    void setObserver(std::function<void()> observer) { _observer = std::move(observer); }

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void readLater();

private:
    /// False when the reply is not the settings.
    bool take(const QDBusMessage& reply);
    bool isAnswerDue() const { return _first || _later > 0; }
    void tell() const;

    BusCaller _bus;
    std::optional<BusQuestion> _first;
    /// How many questions after the first one wait for their answers.
    int _later = 0;
    GroupsOfProperties _groups;
    /// What the portal has told of since then, of which an answer that is due may know nothing.
    GroupsOfProperties _changes;
    std::function<void()> _observer;
};
