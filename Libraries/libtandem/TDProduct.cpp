#include "libtandem/TDProduct.h"

#include "Foundation/NSString.h"
#include "Foundation/UserDirectories.h"

namespace {

constexpr const char* bundlesDirectory = "/Library/PreferenceBundles";
constexpr const char* bindingsFileName = "com.vexil.tandem.bluetooth.plist";
constexpr const char* logFileName = "com.vexil.tandem.log";

} // namespace

std::string TDProduct::bundlePath()
{
    return stringByAppendingPathComponent(bundlesDirectory, bundleName);
}

std::string TDProduct::settingsPath()
{
    return stringByAppendingPathComponent(preferencesDirectory(), settingsFileName);
}

std::string TDProduct::bindingsPath()
{
    return stringByAppendingPathComponent(preferencesDirectory(), bindingsFileName);
}

std::string TDProduct::logoDirectory()
{
    return stringByAppendingPathComponent(preferencesDirectory(), "Tandem");
}

std::string TDProduct::logPath()
{
    return stringByAppendingPathComponent(logsDirectory(), logFileName);
}

std::string TDProduct::cacheDirectory()
{
    return stringByAppendingPathComponent(cachesDirectory(), identifier);
}
