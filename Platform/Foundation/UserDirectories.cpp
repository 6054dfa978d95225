#include "Foundation/UserDirectories.h"

#include "Foundation/NSString.h"

namespace {

constexpr const char* homeDirectory = "/var/mobile";

}

std::string preferencesDirectory()
{
    return stringByAppendingPathComponent(homeDirectory, "Library/Preferences");
}

std::string logsDirectory()
{
    return stringByAppendingPathComponent(homeDirectory, "Library/Logs");
}

std::string cachesDirectory()
{
    return stringByAppendingPathComponent(homeDirectory, "Library/Caches");
}
