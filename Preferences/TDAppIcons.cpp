#include "TDAppIcons.h"

#include "Foundation/NSKeyedArchiver.h"
#include "UIKit/UIImage.h"
#include "libvexil/VXUtils.h"

namespace {

constexpr const char* serviceName = "com.vexil.tandem";
constexpr const char* iconMessage = "com.vexil.tandem.app.icon";
constexpr const char* messageData = "TDServiceMessageData";

std::shared_ptr<UIImage> iconOfApp(const Value& bundleIdentifier)
{
    const Value reply = VXUtils::sendMessageToSpringBoardAndReceiveReplyName_message_ignoreApproach_userInfo(
        serviceName, iconMessage, true, { { messageData, bundleIdentifier } });
    const auto* archive = reply[messageData].data();
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
