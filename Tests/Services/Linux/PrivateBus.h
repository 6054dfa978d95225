#pragma once

#include "Linux/BusCaller.h"
#include "Linux/LinuxPhone.h"
#include "TemporaryDirectory.h"

#include <QCoreApplication>
#include <QProcess>

#include <functional>

/// A bus of the test's own, and the application object that its clients need.
class PrivateBus {
public:
    PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    const QString& address() const { return _address; }
    /// A connection of that name, which goes away with the bus.
    QDBusConnection client(const QString& name);
    BusCaller caller(const QString& name) { return { client(name), std::make_shared<WaitBudget>() }; }

    /// Takes in what comes until that is so; false when it does not become so within a minute.
    static bool waitUntil(const std::function<bool()>& isSo);

private:
    std::unique_ptr<QCoreApplication> _application = windowlessApplication();
    TemporaryDirectory _folder;
    QProcess _daemon;
    QString _address;
    QStringList _clients;
};
