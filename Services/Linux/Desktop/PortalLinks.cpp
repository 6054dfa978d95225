#include "Linux/Desktop/PortalLinks.h"

#include "Linux/Desktop/Portal.h"
#include "Linux/Desktop/PortalRequest.h"

#include <QVariantMap>

namespace {

constexpr const char* openUriInterface = "org.freedesktop.portal.OpenURI";

}

bool PortalLinks::open(const std::string& url)
{
    const bool isWebLink = url.starts_with("https://") || url.starts_with("http://");
    const QDBusConnection bus = _bus.bus();
    if (!isWebLink || !bus.isConnected())
        return false;
    QDBusMessage request = portalCall(openUriInterface, "OpenURI");
    request << QString(QLatin1String(noParentWindow)) << QString::fromStdString(url) << QVariantMap();
    return _acts->start(
        [bus, request] {
            const PortalOutcome outcome = PortalRequest(bus, request).outcome();
            return outcome == PortalOutcome::Done || outcome == PortalOutcome::Cancelled;
        },
        nullptr);
}
