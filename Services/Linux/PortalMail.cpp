#include "Linux/PortalMail.h"

#include "Linux/Portal.h"
#include "Linux/PortalRequest.h"

#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QProcess>
#include <QStandardPaths>
#include <QVariantMap>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr const char* emailInterface = "org.freedesktop.portal.Email";
constexpr const char* mailProgram = "xdg-email";

using Descriptors = QList<QDBusUnixFileDescriptor>;

/// Nothing when one of them cannot be read.
std::optional<Descriptors> opened(const QStringList& files)
{
    Descriptors descriptors;
    for (const QString& file : files) {
        const int descriptor = ::open(file.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0)
            return std::nullopt;
        QDBusUnixFileDescriptor owner;
        owner.giveFileDescriptor(descriptor);
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

bool startMailProgram(const MailDraft& draft, const QStringList& files)
{
    const QString program = QStandardPaths::findExecutable(QLatin1String(mailProgram));
    QStringList words { QStringLiteral("--utf8"), QStringLiteral("--subject"), QString::fromStdString(draft.subject),
        QStringLiteral("--body"), QString::fromStdString(draft.body) };
    for (const QString& file : files)
        words << QStringLiteral("--attach") << file;
    words << QString::fromStdString(draft.recipient);
    return !program.isEmpty() && QProcess::startDetached(program, words);
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
    if (!_bus.isConnected())
        return startMailProgram(draft, files);
    const QDBusMessage request = composeRequest(draft, *attachments);
    return _acts->start(
        [bus = _bus, request, draft, files] {
            switch (PortalRequest(bus, request).outcome()) {
            case PortalOutcome::Refused:
                return startMailProgram(draft, files);
            case PortalOutcome::Unknown:
                // The portal may still show the draft; a second one beside it would be one too many.
                return false;
            default:
                return true;
            }
        },
        draft.onFailure);
}
