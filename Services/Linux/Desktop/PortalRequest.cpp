#include "Linux/Desktop/PortalRequest.h"

#include "Linux/Desktop/Portal.h"

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QTimer>

namespace {

constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr const char* handleSignature = "o";
constexpr const char* responseSignature = "ua{sv}";
constexpr uint responseDone = 0;
constexpr uint responseCancelled = 1;
/// The bus gives a portal that is to be started about as long.
constexpr int startMilliseconds = 30'000;
/// The user may be asked which program it shall be.
constexpr int userMilliseconds = 10 * 60'000;

PortalOutcome outcomeOf(uint response)
{
    if (response == responseDone)
        return PortalOutcome::Done;
    return response == responseCancelled ? PortalOutcome::Cancelled : PortalOutcome::Refused;
}

/// A portal that does not answer in time, or dies over it, may have done it all the same.
PortalOutcome outcomeOf(const QDBusError& error)
{
    switch (error.type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
        return PortalOutcome::Unknown;
    default:
        return PortalOutcome::Refused;
    }
}

} // namespace

PortalRequest::PortalRequest(QDBusConnection bus, QDBusMessage request)
    : _bus(std::move(bus))
    , _request(std::move(request))
{
    // From now on and from all requests, because the response may be there before the request has a name.
    _bus.connect(QString(), QString(), QLatin1String(requestInterface), QStringLiteral("Response"), this,
        SLOT(takeResponse(QDBusMessage)));
}

PortalOutcome PortalRequest::outcome()
{
    QDBusPendingCallWatcher reply(_bus.asyncCall(_request, startMilliseconds));
    connect(&reply, &QDBusPendingCallWatcher::finished, this, [this, &reply] { takeReply(reply.reply()); });
    const QDBusServiceWatcher portal(QLatin1String(portalService), _bus, QDBusServiceWatcher::WatchForUnregistration);
    connect(&portal, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (!_handle.second.isEmpty())
            finish(PortalOutcome::Unknown);
    });
    QTimer::singleShot(userMilliseconds, &_loop, &QEventLoop::quit);
    _loop.exec();
    return _outcome;
}

void PortalRequest::takeReply(const QDBusMessage& reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        finish(outcomeOf(QDBusError(reply)));
    } else if (reply.signature() != QLatin1String(handleSignature)) {
        finish(PortalOutcome::Unknown);
    } else {
        _handle = { reply.service(), reply.arguments().constFirst().value<QDBusObjectPath>().path() };
        if (_responses.contains(_handle))
            finish(_responses.value(_handle));
    }
}

void PortalRequest::takeResponse(const QDBusMessage& response)
{
    const Address request { response.service(), response.path() };
    const bool isResponse = response.signature() == QLatin1String(responseSignature);
    const PortalOutcome outcome =
        isResponse ? outcomeOf(response.arguments().constFirst().toUInt()) : PortalOutcome::Unknown;
    _responses.insert(request, outcome);
    if (request == _handle)
        finish(outcome);
}

void PortalRequest::finish(PortalOutcome outcome)
{
    _outcome = outcome;
    _loop.quit();
}
