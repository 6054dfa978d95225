#include "Shared/SettingsFile.h"

#include "Foundation/FileCache.h"
#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"

#include <chrono>
#include <fcntl.h>
#include <functional>
#include <string_view>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr const char* tornSuffix = ".torn";
constexpr auto lockTimeout = std::chrono::seconds(2);
constexpr auto lockInterval = std::chrono::milliseconds(5);

constexpr const char* restoredNotice =
    "The settings file was damaged. The last good copy is in its place; the damaged file "
    "was kept as %@.";
constexpr const char* emptiedNotice =
    "The settings file was damaged, and there is no earlier copy. Settings start from their "
    "defaults; the damaged file was kept as %@.";

bool isWhole(const Bytes& content)
{
    return propertyListWithData(content).dictionary() != nullptr;
}

Bytes emptySettings()
{
    return dataWithPropertyList(Dictionary()).data.value_or(Bytes());
}

} // namespace

SettingsFile::~SettingsFile()
{
    unlock();
}

Result<void> SettingsFile::provision()
{
    auto made = _files->createDirectory(folder);
    if (made && !_files->exists(path))
        made = _files->overwrite(path, emptySettings());
    if (!made)
        return Failure { _files->hostPath(folder) + ": " + made.failure().text, made.failure().code };
    return {};
}

std::optional<std::string> SettingsFile::repair()
{
    const auto content = _files->read(path);
    if (!content || isWhole(*content))
        return std::nullopt;
    std::string aside = std::string(path) + tornSuffix;
    for (int i = 2; _files->exists(aside); ++i)
        aside = std::string(path) + tornSuffix + std::to_string(i);
    // A copy first and then the good content over the old: at no moment is there neither.
    if (!_files->replace(aside, *content))
        return std::nullopt;
    auto good = _files->read(goodCopyPath);
    const bool restored = good && isWhole(*good);
    if (!_files->replace(path, restored ? *good : emptySettings()))
        return std::nullopt;
    return stringWithFormat(restored ? restoredNotice : emptiedNotice, { _files->hostPath(aside) });
}

bool SettingsFile::lock()
{
    if (_lock < 0)
        _lock = open(_files->hostPath(folder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (_lock < 0)
        return false;
    const auto deadline = std::chrono::steady_clock::now() + lockTimeout;
    while (flock(_lock, LOCK_EX | LOCK_NB) != 0) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(lockInterval);
    }
    return true;
}

void SettingsFile::unlock()
{
    if (_lock >= 0)
        close(_lock);
    _lock = -1;
}

std::size_t SettingsFile::digest() const
{
    const auto content = _files->read(path);
    if (!content)
        return 0;
    return std::hash<std::string_view>()({ reinterpret_cast<const char*>(content->data()), content->size() });
}

bool SettingsFile::hasChanged() const
{
    const bool isKnown = _notedIsSettled && _files->stamp(path) == _noted;
    return !isKnown && digest() != _notedDigest;
}

void SettingsFile::noteContent()
{
    const auto stamp = _files->stamp(path);
    if (stamp == _noted && _notedIsSettled)
        return;
    _noted = stamp;
    _notedIsSettled = !stamp || isSettled(*stamp);
    _notedDigest = digest();
}

void SettingsFile::keepGoodCopy()
{
    if (_notedDigest == _copiedDigest)
        return;
    const auto content = _files->read(path);
    if (!content || !isWhole(*content))
        return;
    if (_files->read(goodCopyPath) == content || _files->replace(goodCopyPath, *content))
        _copiedDigest = _notedDigest;
}
