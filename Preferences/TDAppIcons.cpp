#include "TDAppIcons.h"

#include "Foundation/NSKeyedArchiver.h"
#include "Phone/HomeScreen.h"
#include "UIKit/UIImage.h"
#include "libvexil/VXUtils.h"

namespace {

std::shared_ptr<UIImage> iconOfApp(const Value& bundleIdentifier)
{
    const Value reply = VXUtils::sendMessageToSpringBoardAndReceiveReplyName_message_ignoreApproach_userInfo(
        AppIconRequest::service, AppIconRequest::message, true, { { AppIconRequest::data, bundleIdentifier } });
    const auto* archive = reply[AppIconRequest::data].data();
    return archive ? NSKeyedUnarchiver::unarchiveObjectWithData(*archive).as<UIImage>() : nullptr;
}

} // namespace

void fetchAppIcons(const Rows& rows)
{
    for (const Row& row : rows) {
        const Value& bundleIdentifier = row->propertyForKey(PSProperty::bundleIdentifier);
        if (bundleIdentifier.isNull())
            continue;
        if (const auto icon = iconOfApp(bundleIdentifier))
            row->setProperty_forKey(icon, PSProperty::iconImage);
    }
}
