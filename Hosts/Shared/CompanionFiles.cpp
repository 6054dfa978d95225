#include "Shared/CompanionFiles.h"

#include "Shared/SettingsFile.h"
#include "libtandem/TDProduct.h"

#include <filesystem>

namespace fs = std::filesystem;

std::vector<std::string> CompanionFiles::hostFolders() const
{
    return { _files->hostPath(SettingsFile::folder), _files->hostPath(TDProduct::logoDirectory()) };
}

CompanionFiles::Stamps CompanionFiles::stamps() const
{
    Stamps stamps;
    const auto add = [&](const std::string& path) {
        if (const auto stamp = _files->stamp(path))
            stamps.emplace(path, *stamp);
    };
    add(TDProduct::bindingsPath());
    const std::string logoFolder = TDProduct::logoDirectory();
    std::error_code error;
    for (fs::directory_iterator logo(_files->hostPath(logoFolder), error), end; !error && logo != end;
         logo.increment(error))
        add(logoFolder + "/" + logo->path().filename().string());
    return stamps;
}
