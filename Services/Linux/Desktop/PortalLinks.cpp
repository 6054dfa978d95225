#include "Linux/Desktop/PortalLinks.h"

#include "Linux/Desktop/Browser.h"
#include "Linux/Desktop/Portal.h"

namespace {

constexpr const char* openUriInterface = "org.freedesktop.portal.OpenURI";

}

bool PortalLinks::open(const std::string& url, std::function<void()> onFailure)
{
    if (!url.starts_with("https://") && !url.starts_with("http://"))
        return false;
    const Variant arguments =
        Variant::ofTuple({ Variant::ofText(noParentWindow), Variant::ofText(url), Variant::ofProperties({}) });
    _requests->start(
        portalRequest(openUriInterface, "OpenURI", arguments), [url] { return browserCommand(url); },
        std::move(onFailure));
    return true;
}
