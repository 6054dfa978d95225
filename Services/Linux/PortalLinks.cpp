#include "Linux/PortalLinks.h"

#include "Linux/Portal.h"

#include <QVariantMap>

namespace {

constexpr const char* openUriInterface = "org.freedesktop.portal.OpenURI";

}

bool PortalLinks::open(const std::string& url)
{
    if (!url.starts_with("https://") && !url.starts_with("http://"))
        return false;
    QDBusMessage request = portalCall(openUriInterface, "OpenURI");
    request << QString(QLatin1String(noParentWindow)) << QString::fromStdString(url) << QVariantMap();
    return _bus.call(request).type() == QDBusMessage::ReplyMessage;
}
