#include "Linux/Desktop/PortalSettings.h"

#include "Linux/Desktop/Portal.h"

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <utility>

namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";

QDBusMessage readRequest()
{
    QDBusMessage request = portalCall(settingsInterface, "ReadAll");
    request << QStringList { QLatin1String(PortalSettings::appearanceGroup),
        QLatin1String(PortalSettings::interfaceGroup) };
    return request;
}

} // namespace

PortalSettings::PortalSettings(BusCaller sessionBus)
    : _bus(std::move(sessionBus))
{
    if (!_bus.isConnected())
        return;
    // The bus looks the types of a slot up by their names, which must be known by then.
    qRegisterMetaType<QDBusVariant>();
    QDBusConnection bus = _bus.bus();
    bus.connect(QLatin1String(portalService), QLatin1String(portalPath), QLatin1String(settingsInterface),
        QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto* watcher =
        new QDBusServiceWatcher(QLatin1String(portalService), bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalSettings::readLater);
    _first = _bus.ask(readRequest());
}

QVariantMap PortalSettings::group(const char* name)
{
    // One that has not answered in time is asked once more, and takes its time.
    if (const auto first = std::exchange(_first, std::nullopt); first && !take(_bus.answerTo(*first)))
        readLater();
    return _groups.value(QLatin1String(name));
}

bool PortalSettings::take(const QDBusMessage& reply)
{
    const auto groups = propertiesByGroupOf(reply);
    if (groups) {
        // Asked before this one was.
        _first.reset();
        _groups = *groups;
        for (auto change = _changes.cbegin(); change != _changes.cend(); ++change)
            _groups[change.key()].insert(change.value());
    }
    if (!isAnswerDue())
        _changes.clear();
    return groups.has_value();
}

void PortalSettings::settingChanged(const QString& group, const QString& key, const QDBusVariant& value)
{
    if (group != QLatin1String(appearanceGroup) && group != QLatin1String(interfaceGroup))
        return;
    _groups[group].insert(key, value.variant());
    if (isAnswerDue())
        _changes[group].insert(key, value.variant());
    tell();
}

void PortalSettings::readLater()
{
    if (!_bus.isConnected())
        return;
    ++_later;
    auto* watcher = new QDBusPendingCallWatcher(_bus.bus().asyncCall(readRequest()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        --_later;
        if (take(finished->reply()))
            tell();
    });
}

void PortalSettings::tell() const
{
    if (_observer)
        _observer();
}
