#include "Linux/BusCaller.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* systemBusName = "tandem-system";
constexpr const char* sessionBusName = "tandem-session";
constexpr const char* sessionAddressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* runtimeDirectoryVariable = "XDG_RUNTIME_DIR";
constexpr const char* runtimeSocket = "/bus";

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
bool hasSessionBus()
{
    if (!qEnvironmentVariableIsEmpty(sessionAddressVariable))
        return true;
    const QString directory = qEnvironmentVariable(runtimeDirectoryVariable);
    return !directory.isEmpty() && QFileInfo::exists(directory + QLatin1String(runtimeSocket));
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
    return QDBusConnection::connectToBus(QDBusConnection::SystemBus, QLatin1String(systemBusName));
}

QDBusConnection sessionBus()
{
    if (!hasSessionBus())
        return QDBusConnection(QLatin1String(sessionBusName));
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, QLatin1String(sessionBusName));
}
