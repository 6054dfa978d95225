#include "Linux/BusCaller.h"

#include "Linux/BusProbe.h"

#include <QDBusError>
#include <QDBusPendingCall>

#include <algorithm>
#include <optional>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* systemBusName = "tandem-system";
constexpr const char* sessionBusName = "tandem-session";
constexpr const char* systemAddressVariable = "DBUS_SYSTEM_BUS_ADDRESS";
constexpr const char* sessionAddressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* runtimeDirectoryVariable = "XDG_RUNTIME_DIR";
constexpr const char* runtimeSocket = "/bus";
constexpr const char* systemSocket = "/run/dbus/system_bus_socket";
constexpr const char* socketAddress = "unix:path=";

QDBusMessage refusal(const QDBusMessage& request)
{
    return request.createErrorReply(QDBusError::NoReply, QStringLiteral("not asked"));
}

/// Whether it makes no sense to ask that daemon again for now. A daemon that refuses a question has not failed.
bool isFailureOfDaemon(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return false;
    switch (QDBusError(reply).type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
    case QDBusError::NoServer:
    case QDBusError::NoNetwork:
        return true;
    default:
        return false;
    }
}

/// Where no address is given, the bus library would start a bus of its own.
QString sessionAddress()
{
    const QString address = qEnvironmentVariable(sessionAddressVariable);
    const QString directory = qEnvironmentVariable(runtimeDirectoryVariable);
    if (!address.isEmpty() || directory.isEmpty())
        return address;
    return QLatin1String(socketAddress) + directory + QLatin1String(runtimeSocket);
}

QString systemAddress()
{
    const QString address = qEnvironmentVariable(systemAddressVariable);
    return address.isEmpty() ? QLatin1String(socketAddress) + QLatin1String(systemSocket) : address;
}

QDBusConnection connected(const QString& address, QDBusConnection::BusType type, const char* name)
{
    if (!doesBusAnswer(address))
        return QDBusConnection(QLatin1String(name));
    return QDBusConnection::connectToBus(type, QLatin1String(name));
}

} // namespace

std::vector<QDBusMessage> BusCaller::callAll(const std::vector<QDBusMessage>& requests) const
{
    const auto start = Clock::now();
    std::vector<std::optional<QDBusPendingCall>> calls;
    for (const QDBusMessage& request : requests) {
        const bool asks = _bus.isConnected() && _budget->patience().count() > 0
            && !_budget->hasFailed(request.service().toStdString());
        calls.push_back(asks ? std::optional(_bus.asyncCall(request, static_cast<int>(_budget->patience().count())))
                             : std::nullopt);
    }
    std::vector<QDBusMessage> replies;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (calls[i])
            calls[i]->waitForFinished();
        replies.push_back(calls[i] ? calls[i]->reply() : refusal(requests[i]));
        if (isFailureOfDaemon(replies.back()))
            _budget->noteFailureOf(requests[i].service().toStdString());
    }
    // Rounded up, so that many short waits cannot add up to a long one.
    _budget->spend(std::chrono::ceil<WaitBudget::Milliseconds>(Clock::now() - start));
    return replies;
}

QDBusConnection systemBus()
{
    return connected(systemAddress(), QDBusConnection::SystemBus, systemBusName);
}

QDBusConnection sessionBus()
{
    return connected(sessionAddress(), QDBusConnection::SessionBus, sessionBusName);
}
