#include "libvexil/VXUtils.h"

#include "Phone/Phone.h"

Value VXUtils::sendMessageToSpringBoardAndReceiveReplyName_message_ignoreApproach_userInfo(
    const std::string& name, const std::string& message, bool /*ignoreApproach*/, const Dictionary& userInfo)
{
    const auto& homeScreen = Phone::current().homeScreen;
    return homeScreen ? homeScreen->ask(name, message, userInfo) : Value();
}
