#pragma once

#include <QDBusMessage>
#include <QLatin1String>

/// The desktop's portals, by which a program asks the user's desktop to do something for it.
inline constexpr const char* portalService = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
/// We have no window of ours to put the portal's before.
inline constexpr const char* noParentWindow = "";

inline QDBusMessage portalCall(const char* interface, const char* method)
{
    return QDBusMessage::createMethodCall(
        QLatin1String(portalService), QLatin1String(portalPath), QLatin1String(interface), QLatin1String(method));
}
