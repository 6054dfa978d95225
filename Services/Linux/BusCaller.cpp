#include "Linux/BusCaller.h"

#include "Linux/BusProbe.h"

#include <QDBusError>

#include <algorithm>

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

QDBusConnection connected(const QString& address, const char* name)
{
    const QString answering = addressThatAnswers(address);
    if (answering.isEmpty())
        return QDBusConnection(QLatin1String(name));
    return QDBusConnection::connectToBus(answering, QLatin1String(name));
}

} // namespace

const QDBusConnection& BusOnDemand::connection()
{
    std::call_once(_once, [this] { _connection.emplace(_connect()); });
    return *_connection;
}

BusQuestion BusCaller::ask(const QDBusMessage& request) const
{
    const auto patience = static_cast<int>(_budget->patience().count());
    if (!isConnected() || patience <= 0 || _budget->hasFailed(request.service().toStdString()))
        return { request, std::nullopt };
    return { request, bus().asyncCall(request, patience) };
}

QDBusMessage BusCaller::answerTo(const BusQuestion& question) const
{
    if (!question.reply)
        return refusal(question.request);
    const auto start = Clock::now();
    QDBusPendingCall reply = *question.reply;
    reply.waitForFinished();
    _budget->spend(Clock::now() - start);
    if (isFailureOfDaemon(reply.reply()))
        _budget->noteFailureOf(question.request.service().toStdString());
    return reply.reply();
}

std::vector<QDBusMessage> BusCaller::callAll(const std::vector<QDBusMessage>& requests) const
{
    std::vector<BusQuestion> questions;
    for (const QDBusMessage& request : requests)
        questions.push_back(ask(request));
    std::vector<QDBusMessage> replies;
    for (const BusQuestion& question : questions)
        replies.push_back(answerTo(question));
    return replies;
}

QDBusConnection systemBus()
{
    return connected(systemAddress(), systemBusName);
}

QDBusConnection sessionBus()
{
    return connected(sessionAddress(), sessionBusName);
}
