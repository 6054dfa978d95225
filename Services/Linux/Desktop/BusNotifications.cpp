#include "Linux/Desktop/BusNotifications.h"

#include <QRegularExpression>

namespace {

constexpr const char* path = "/com/vexil/DarwinNotifications";
constexpr const char* interface = "com.vexil.DarwinNotifications";
constexpr const char* signalName = "Posted";
constexpr const char* signature = "s";
/// What stands in a match rule as it is, and is short enough for one. "$" would let a line break through at the end.
constexpr const char* selectableName = R"(^[A-Za-z0-9._+-]{1,255}\z)";

constexpr const char* busService = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr const char* localPath = "/org/freedesktop/DBus/Local";
constexpr const char* localInterface = "org.freedesktop.DBus.Local";

bool canBeSelected(const QString& name)
{
    static const QRegularExpression pattern { QLatin1String(selectableName) };
    return pattern.match(name).hasMatch();
}

} // namespace

BusNotifications::BusNotifications(BusCaller sessionBus)
    : _bus(std::move(sessionBus))
    , _asked(_bus.bus())
{
    watchForLoss();
}

QDBusConnection BusNotifications::connection()
{
    QDBusConnection bus = _bus.bus();
    // The one that was asked is kept, so no other can have its address.
    if (bus.internalPointer() == _asked.internalPointer())
        return bus;
    _asked = bus;
    watchForLoss();
    for (const auto& [name, handlers] : _observers)
        select(name);
    if (_listensToAll)
        selectAll();
    return bus;
}

void BusNotifications::watchForLoss()
{
    _asked.connect(QString(), QLatin1String(localPath), QLatin1String(localInterface), QStringLiteral("Disconnected"),
        this, SLOT(loseBus()));
}

void BusNotifications::select(const std::string& name)
{
    _asked.connect(QString(), QLatin1String(path), QLatin1String(interface), QLatin1String(signalName),
        { QString::fromStdString(name) }, QLatin1String(signature), this, SLOT(receive(QString)));
    _isFlushed = false;
}

void BusNotifications::selectAll()
{
    _asked.connect(QString(), QLatin1String(path), QLatin1String(interface), QLatin1String(signalName), {},
        QLatin1String(signature), this, SLOT(receiveAny(QString)));
    _isFlushed = false;
}

void BusNotifications::post(const std::string& name)
{
    QDBusMessage notification =
        QDBusMessage::createSignal(QLatin1String(path), QLatin1String(interface), QLatin1String(signalName));
    notification << QString::fromStdString(name);
    const QDBusConnection bus = connection();
    if (bus.isConnected() && bus.send(notification))
        _isFlushed = false;
}

void BusNotifications::addObserver(const std::string& name, Handler handler)
{
    if (!canBeSelected(QString::fromStdString(name))) {
        addObserverOfAll([name, handler = std::move(handler)](const std::string& posted) {
            if (posted == name)
                handler(posted);
        });
        return;
    }
    std::vector<Handler>& handlers = _observers[name];
    handlers.push_back(std::move(handler));
    if (handlers.size() == 1)
        select(name);
}

void BusNotifications::addObserverOfAll(Handler handler)
{
    _observersOfAll.push_back(std::move(handler));
    if (!std::exchange(_listensToAll, true))
        selectAll();
}

void BusNotifications::flush()
{
    // What a bus that is gone has not got by now, it will not get.
    if (_isFlushed || !_asked.isConnected()) {
        _isFlushed = true;
        return;
    }
    const QDBusMessage reply = _bus.call(QDBusMessage::createMethodCall(
        QLatin1String(busService), QLatin1String(busPath), QLatin1String(busService), QStringLiteral("GetId")));
    _isFlushed = reply.type() == QDBusMessage::ReplyMessage;
}

void BusNotifications::receive(const QString& name)
{
    const std::string text = name.toStdString();
    const auto observers = _observers.find(text);
    if (observers == _observers.end())
        return;
    // Observers that are added meanwhile begin with the next one.
    const std::size_t count = observers->second.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Handler handler = observers->second[i];
        if (handler)
            handler(text);
    }
}

void BusNotifications::receiveAny(const QString& name)
{
    const std::string text = name.toStdString();
    const std::size_t count = _observersOfAll.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Handler handler = _observersOfAll[i];
        if (handler)
            handler(text);
    }
}

void BusNotifications::loseBus()
{
    if (_lostHandler)
        _lostHandler();
}
