#include "PrivateBus.h"

#include <QEventLoop>
#include <QTimer>

namespace {

constexpr int patienceMilliseconds = 60'000;

}

PrivateBus::PrivateBus()
{
    _daemon.setStandardErrorFile(QProcess::nullDevice());
    _daemon.start(QStringLiteral("dbus-daemon"),
        { QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address") });
    while (!_daemon.canReadLine() && _daemon.waitForReadyRead(patienceMilliseconds)) { }
    _address = QString::fromUtf8(_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    for (const QString& name : _clients)
        QDBusConnection::disconnectFromBus(name);
    _daemon.kill();
    _daemon.waitForFinished();
}

QDBusConnection PrivateBus::client(const QString& name)
{
    _clients.append(name);
    return QDBusConnection::connectToBus(_address, name);
}

bool PrivateBus::waitUntil(const std::function<bool()>& isSo)
{
    bool isLate = false;
    QTimer alarm;
    alarm.setSingleShot(true);
    QObject::connect(&alarm, &QTimer::timeout, [&] { isLate = true; });
    alarm.start(patienceMilliseconds);
    while (!isSo() && !isLate)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return isSo();
}
