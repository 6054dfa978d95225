#include "Linux/Desktop/PortalMail.h"

#include "Linux/Desktop/MailProgram.h"
#include "Linux/Desktop/Portal.h"
#include "Linux/Desktop/PortalRequest.h"

#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr const char* emailInterface = "org.freedesktop.portal.Email";

using Descriptors = QList<QDBusUnixFileDescriptor>;

/// Not waiting for who writes into it, where it is a pipe.
constexpr int openFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

bool isRegularFile(int descriptor)
{
    struct stat status { };
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Nothing when one of them cannot be read or is no regular file.
std::optional<Descriptors> opened(const QStringList& files)
{
    Descriptors descriptors;
    for (const QString& file : files) {
        const int descriptor = ::open(file.toLocal8Bit().constData(), openFlags);
        if (descriptor < 0)
            return std::nullopt;
        QDBusUnixFileDescriptor owner;
        owner.giveFileDescriptor(descriptor);
        if (!isRegularFile(descriptor))
            return std::nullopt;
        descriptors.append(owner);
    }
    return descriptors;
}

QDBusMessage composeRequest(const MailDraft& draft, const Descriptors& attachments)
{
    qDBusRegisterMetaType<Descriptors>();
    QDBusMessage request = portalCall(emailInterface, "ComposeEmail");
    request << QString(QLatin1String(noParentWindow))
            << QVariantMap { { QStringLiteral("address"), QString::fromStdString(draft.recipient) },
                   { QStringLiteral("subject"), QString::fromStdString(draft.subject) },
                   { QStringLiteral("body"), QString::fromStdString(draft.body) },
                   { QStringLiteral("attachment_fds"), QVariant::fromValue(attachments) } };
    return request;
}

} // namespace

bool PortalMail::compose(const MailDraft& draft)
{
    QStringList files;
    for (const std::string& attachment : draft.attachments)
        files.append(QString::fromStdString(_hostPath(attachment)));
    const auto attachments = opened(files);
    if (!attachments)
        return false;
    const QDBusMessage request = composeRequest(draft, *attachments);
    return _acts->start(
        [bus = _bus.bus(), request, draft, files] {
            const auto outcome = bus.isConnected() ? PortalRequest(bus, request).outcome() : PortalOutcome::Refused;
            if (outcome == PortalOutcome::Refused)
                return runMailProgram(draft, files);
            // One that has not told may still show the draft; a second one beside it would be one too many.
            return outcome != PortalOutcome::Unknown;
        },
        draft.onFailure);
}
