#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QMap>
#include <QObject>

#include <utility>

/// What became of something that a portal was asked to do for the user.
enum class PortalOutcome {
    Done,
    /// The user does not want it after all.
    Cancelled,
    /// The portal is not there, refused or failed: it has done nothing.
    Refused,
    /// The portal has not told, and may still do it.
    Unknown,
};

/// A request to a portal, which first names the request and tells later what became of it.
///
/// To be made and waited for in a QThread of its own, whose quit() ends the waiting.
class PortalRequest final : public QObject {
    Q_OBJECT
public:
    PortalRequest(QDBusConnection bus, QDBusMessage request);

    /// Sends it, and waits for as long as it may take to start a portal and, after that, to ask the user something.
    PortalOutcome outcome();

private Q_SLOTS:
    void takeResponse(const QDBusMessage& response);

private:
    /// A process and an object of it.
    using Address = std::pair<QString, QString>;

    void takeReply(const QDBusMessage& reply);
    void finish(PortalOutcome outcome);

    QDBusConnection _bus;
    QDBusMessage _request;
    QEventLoop _loop;
    Address _handle;
    QMap<Address, PortalOutcome> _responses;
    PortalOutcome _outcome = PortalOutcome::Unknown;
};
