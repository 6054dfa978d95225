#include "Foundation/FileCache.h"

#include <algorithm>
#include <chrono>

namespace {

/// The longest step of a file system's clock, that of FAT.
constexpr std::chrono::seconds settlingTime { 2 };

} // namespace

bool isSettled(const FileStamp& stamp)
{
    const std::chrono::nanoseconds latest { std::max(stamp.modified, stamp.changed) };
    return std::chrono::system_clock::now() - std::chrono::system_clock::time_point { latest } > settlingTime;
}
