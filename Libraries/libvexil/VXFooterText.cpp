#include "libvexil/VXFooterText.h"

#include <array>
#include <cstdlib>
#include <map>

#include <sys/stat.h>

namespace {

// Where the package tools look for their database.
constexpr const char* databaseVariable = "DPKG_ADMINDIR";
constexpr const char* rootVariable = "DPKG_ROOT";
constexpr const char* usualDatabase = "/var/lib/dpkg";
/// The database, and the folder of the changes that are not in it yet.
constexpr std::array<const char*, 2> databaseFiles { "/status", "/updates" };

/// What tells one state of a file from another; zeros for a missing one.
struct FileState {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    time_t seconds = 0;
    long nanoseconds = 0;

    bool operator==(const FileState&) const = default;
};

using DatabaseState = std::array<FileState, databaseFiles.size()>;

struct Footer {
    long year = 0;
    DatabaseState packages;
    std::string text;
};

FileState stateOf(const std::string& path)
{
    struct stat status { };
    if (stat(path.c_str(), &status) != 0)
        return {};
    return { status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec };
}

std::string databaseFolder()
{
    if (const char* folder = std::getenv(databaseVariable))
        return folder;
    const char* root = std::getenv(rootVariable);
    return std::string(root ? root : "") + usualDatabase;
}

DatabaseState databaseState()
{
    DatabaseState state;
    for (std::size_t i = 0; i < state.size(); ++i)
        state[i] = stateOf(databaseFolder() + databaseFiles[i]);
    return state;
}

} // namespace

std::string sharedFooterText(const std::string& product, long year, const std::function<std::string(long)>& ask)
{
    static std::map<std::string, Footer> footers;
    const DatabaseState packages = databaseState();
    const auto [footer, isNew] = footers.try_emplace(product);
    if (isNew || footer->second.year != year || footer->second.packages != packages)
        footer->second = { year, packages, ask(year) };
    return footer->second.text;
}
