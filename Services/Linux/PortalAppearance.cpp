#include "Linux/PortalAppearance.h"

#include "Linux/BusValues.h"
#include "Linux/Portal.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <array>
#include <cmath>

namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* colorScheme = "color-scheme";
constexpr const char* textScaling = "text-scaling-factor";
constexpr qlonglong preferDark = 1;
constexpr double smallestText = 0.5;
constexpr double largestText = 3;

struct Setting {
    const char* group;
    const char* key;
};

constexpr std::array<Setting, 2> settings { {
    { "org.freedesktop.appearance", colorScheme },
    { "org.gnome.desktop.interface", textScaling },
} };

QDBusMessage readRequest(const Setting& setting)
{
    QDBusMessage request = portalCall(settingsInterface, "Read");
    request << QString(QLatin1String(setting.group)) << QString(QLatin1String(setting.key));
    return request;
}

QVariant readValue(const QDBusMessage& reply)
{
    const bool answered = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("v");
    return answered ? unwrapped(reply.arguments().constFirst()) : QVariant();
}

bool isFollowed(const QString& group, const QString& key)
{
    return std::ranges::any_of(settings, [&](const Setting& setting) {
        return group == QLatin1String(setting.group) && key == QLatin1String(setting.key);
    });
}

} // namespace

PortalAppearance::PortalAppearance(BusCaller sessionBus)
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
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalAppearance::portalAppeared);

    const auto replies = _bus.callAll({ readRequest(settings[0]), readRequest(settings[1]) });
    for (std::size_t i = 0; i < settings.size(); ++i)
        take(QLatin1String(settings[i].key), readValue(replies[i]));
}

bool PortalAppearance::take(const QString& key, const QVariant& value)
{
    const QVariantMap holder { { key, value } };
    const bool wasDark = _isDark;
    const double oldScale = _textScale;
    if (key == QLatin1String(colorScheme))
        _isDark = numberOf(holder, colorScheme) == preferDark;
    else if (value.typeId() == QMetaType::Double && std::isfinite(value.toDouble()))
        _textScale = std::clamp(value.toDouble(), smallestText, largestText);
    return wasDark != _isDark || oldScale != _textScale;
}

void PortalAppearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value)
{
    if (isFollowed(group, key) && take(key, unwrapped(value.variant())) && _observer)
        _observer();
}

void PortalAppearance::portalAppeared()
{
    for (const Setting& setting : settings)
        readLater(readRequest(setting), QLatin1String(setting.key));
}

void PortalAppearance::readLater(const QDBusMessage& request, const QString& key)
{
    auto* watcher = new QDBusPendingCallWatcher(_bus.bus().asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, key](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        if (!finished->isError() && take(key, readValue(finished->reply())) && _observer)
            _observer();
    });
}
