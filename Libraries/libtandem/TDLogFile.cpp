#include "libtandem/TDLogFile.h"

#include "Foundation/NSString.h"
#include "Foundation/UserDirectories.h"
#include "Phone/Phone.h"
#include "libtandem/TDProduct.h"

#include <algorithm>
#include <chrono>

namespace {

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

void shorten(Files& files, const std::string& path)
{
    if (const auto log = files.read(path))
        files.replace(path, newerHalf(*log));
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
    const std::string path = TDProduct::logPath();
    auto length = files->append(path, bytes);
    if (!length && files->createDirectory(logsDirectory()))
        length = files->append(path, bytes);
    if (length && *length > largestLog)
        shorten(*files, path);
}
