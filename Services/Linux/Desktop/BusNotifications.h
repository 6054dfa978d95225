#pragma once

#include "Linux/BusCaller.h"
#include "Phone/DarwinNotifications.h"

#include <QObject>

#include <map>
#include <vector>

/// Darwin notifications as signals on the user's bus: each process that asked for a name gets every notification of
/// that name, the poster too, in the order of their posting. Handlers are called from the event loop of the main
/// thread. Without a bus nothing is posted and nothing comes. One that comes, or comes back, is used from the first
/// posting of a later turn on.
///
/// The signal is com.vexil.DarwinNotifications.Posted(s name), from the object /com/vexil/DarwinNotifications.
class BusNotifications final : public QObject, public DarwinNotifications {
    Q_OBJECT
public:
    explicit BusNotifications(BusCaller sessionBus);

    bool isConnected() const { return _bus.isConnected(); }
    /// The handler is called for every notification, whatever its name.
    void addObserverOfAll(Handler handler);
    /// Called when the bus goes away; nothing comes before something is posted at one that has come back.
    void setLostHandler(std::function<void()> handler) { _lostHandler = std::move(handler); }
    /// Waits until the bus has all that was posted and all that was asked for, so that the process may end, or say that
    /// it listens. Does nothing when there is nothing to wait for.
    void flush();

    // DarwinNotifications
    void post(const std::string& name) override;
    void addObserver(const std::string& name, Handler handler) override;

private Q_SLOTS:
    void receive(const QString& name);
    void receiveAny(const QString& name);
    void loseBus();

private:
    /// The bus, which has been asked for all that is observed.
    QDBusConnection connection();
    void select(const std::string& name);
    void selectAll();
    void watchForLoss();

    BusCaller _bus;
    /// Where all that is observed has been asked for.
    QDBusConnection _asked;
    bool _isFlushed = true;
    bool _listensToAll = false;
    std::map<std::string, std::vector<Handler>> _observers;
    /// Those of all names, and those of names that the bus cannot select.
    std::vector<Handler> _observersOfAll;
    std::function<void()> _lostHandler;
};
