#include "libtandem/TDLogFile.h"

#include "Foundation/NSString.h"
#include "Phone/Phone.h"

#include <algorithm>
#include <chrono>

namespace {

constexpr const char* logDirectory = "/var/mobile/Library/Logs";
constexpr const char* logFile = "/var/mobile/Library/Logs/com.vexil.tandem.log";
constexpr std::size_t largestLog = std::size_t { 1 } << 20;
constexpr double referenceDateSince1970 = 978307200;

Date now()
{
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    return { std::chrono::duration<double>(since1970).count() - referenceDateSince1970 };
}

/// The newer half of the lines.
Bytes newerHalf(const Bytes& log)
{
    const auto middle = std::find(log.begin() + static_cast<std::ptrdiff_t>(log.size() / 2), log.end(), '\n');
    return middle == log.end() ? Bytes() : Bytes(middle + 1, log.end());
}

void shorten(Files& files)
{
    if (const auto log = files.read(logFile))
        files.replace(logFile, newerHalf(*log));
}

} // namespace

void appendToLogFile(const std::string& line)
{
    const auto& files = Phone::current().files;
    if (!files)
        return;
    const std::string entry = stringWithFormat("%@ %@\n", { now(), line });
    const Bytes bytes(
        entry.begin(), entry.begin() + static_cast<std::ptrdiff_t>(std::min(entry.size(), largestLog / 2)));
    auto length = files->append(logFile, bytes);
    if (!length && files->createDirectory(logDirectory))
        length = files->append(logFile, bytes);
    if (length && *length > largestLog)
        shorten(*files);
}
