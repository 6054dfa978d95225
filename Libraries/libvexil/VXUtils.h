#pragma once

#include "Runtime/Value.h"

#include <string>

/// The maker's utilities.
class VXUtils {
public:
    /// Asks the home-screen process and waits for its reply dictionary; null when there is none.
    /// `ignoreApproach` asks whichever way the home screen listens; here there is one.
    static Value sendMessageToSpringBoardAndReceiveReplyName_message_ignoreApproach_userInfo(
        const std::string& name, const std::string& message, bool ignoreApproach, const Dictionary& userInfo);
};
