#include "Shared/CompanionFiles.h"

#include "Shared/SettingsFile.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr const char* logoFolder = "/var/mobile/Library/Preferences/Tandem";

} // namespace

std::vector<std::string> CompanionFiles::hostFolders() const
{
    return { _files->hostPath(SettingsFile::folder), _files->hostPath(logoFolder) };
}

CompanionFiles::Stamps CompanionFiles::stamps() const
{
    Stamps stamps;
    const auto add = [&](const std::string& path) {
        if (const auto stamp = _files->stamp(path))
            stamps.emplace(path, *stamp);
    };
    add(bindingsPath);
    std::error_code error;
    for (fs::directory_iterator logo(_files->hostPath(logoFolder), error), end; !error && logo != end;
         logo.increment(error))
        add(std::string(logoFolder) + "/" + logo->path().filename().string());
    return stamps;
}
