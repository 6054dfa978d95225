#include "PrivateBus.h"

#include <QEventLoop>
#include <QTimer>

namespace {

constexpr int patienceMilliseconds = 60'000;
/// One that starts no services, so that no portal of the machine comes into it.
constexpr const char* configuration =
    "<!DOCTYPE busconfig PUBLIC '-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN'"
    " 'http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd'>"
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
    "<policy context='default'><allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
    "<allow own='*'/></policy></busconfig>";

} // namespace

PrivateBus::PrivateBus()
{
    _daemon.setStandardErrorFile(QProcess::nullDevice());
    _folder.write("bus.conf", configuration);
    const QString file = QString::fromStdString(_folder.path("bus.conf"));
    _daemon.start(QStringLiteral("dbus-daemon"),
        { QStringLiteral("--config-file=") + file, QStringLiteral("--nofork"), QStringLiteral("--print-address") });
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
