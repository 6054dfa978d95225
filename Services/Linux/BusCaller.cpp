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

/// Of two threads that come together, one connects and the other gets what that has come to.
QDBusConnection connected(const QString& address, const char* name, std::mutex& connecting)
{
    std::unique_lock lock(connecting, std::try_to_lock);
    const bool hasCompany = !lock.owns_lock();
    if (hasCompany)
        lock.lock();
    const QDBusConnection known { QLatin1String(name) };
    if (known.isConnected() || hasCompany)
        return known;
    // The bus library would hand out the one that is gone again.
    QDBusConnection::disconnectFromBus(QLatin1String(name));
    const QString answering = addressThatAnswers(address);
    if (answering.isEmpty())
        return QDBusConnection(QLatin1String(name));
    return QDBusConnection::connectToBus(answering, QLatin1String(name));
}

} // namespace

QDBusConnection BusOnDemand::connection(unsigned turn)
{
    const std::lock_guard lock(_mutex);
    const bool isDue = !_connection || (turn > _triedIn && !_connection->isConnected());
    if (isDue) {
        _triedIn = turn;
        _connection.emplace(_connect());
    }
    return *_connection;
}

QDBusConnection BusCaller::bus() const
{
    const auto start = Clock::now();
    QDBusConnection connection = _bus->connection(_budget->turn());
    _budget->spend(Clock::now() - start);
    return connection;
}

BusQuestion BusCaller::ask(const QDBusMessage& request) const
{
    const QDBusConnection connection = bus();
    const auto patience = static_cast<int>(_budget->patience().count());
    if (!connection.isConnected() || patience <= 0 || _budget->hasFailed(request.service().toStdString()))
        return { request, std::nullopt };
    return { request, connection.asyncCall(request, patience) };
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
    static std::mutex connecting;
    return connected(systemAddress(), systemBusName, connecting);
}

QDBusConnection sessionBus()
{
    static std::mutex connecting;
    return connected(sessionAddress(), sessionBusName, connecting);
}
