#pragma once

#include "Linux/Bus/Bus.h"

#include <utility>

/// The desktop's portals, by which a program asks the user's desktop to do something for it.
inline constexpr const char* portalName = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
/// We have no window of ours to put the portal's before.
inline constexpr const char* noParentWindow = "";

/// A request that the user waits for, so the portal is started for it.
inline BusRequest portalRequest(const char* interface, const char* method, Variant arguments)
{
    return { portalName, portalPath, interface, method, std::move(arguments), {}, BusRequest::AutoStart::Yes, {} };
}
