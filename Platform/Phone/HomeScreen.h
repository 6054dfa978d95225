#pragma once

#include "Runtime/Value.h"

#include <string>

/// The request for an app's icon. Under the same key go in the app's bundle identifier and come back the icon, as a
/// keyed archive.
namespace AppIconRequest {
inline constexpr const char* service = "com.vexil.tandem";
inline constexpr const char* message = "com.vexil.tandem.app.icon";
inline constexpr const char* data = "TDServiceMessageData";
} // namespace AppIconRequest

/// The home-screen process, asked synchronously.
class HomeScreen {
public:
    virtual ~HomeScreen() = default;
    /// The reply dictionary, or null when there is none.
    virtual Value ask(const std::string& service, const std::string& message, const Value& userInfo) = 0;
};
