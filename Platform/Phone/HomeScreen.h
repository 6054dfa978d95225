#pragma once

#include "Runtime/Value.h"

#include <string>

/// The home-screen process, asked synchronously.
class HomeScreen {
public:
    virtual ~HomeScreen() = default;
    /// The reply dictionary, or null when there is none.
    virtual Value ask(const std::string& service, const std::string& message, const Value& userInfo) = 0;
};
