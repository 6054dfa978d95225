#pragma once

#include "Storage/DiskFiles.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

/// The files besides the settings that pages show and other processes change: the bindings of devices and the logos of
/// carriers.
class CompanionFiles {
public:
    explicit CompanionFiles(std::shared_ptr<DiskFiles> files)
        : _files(std::move(files))
    {
    }

    /// True when one of them came, went or is another one than when `note` was last called.
    bool hasChanged() const { return stamps() != _noted; }
    void note() { _noted = stamps(); }

    /// The folders on this machine in which they come and go. They need not be there.
    std::vector<std::string> hostFolders() const;

private:
    using Stamps = std::map<std::string, FileStamp>;

    Stamps stamps() const;

    std::shared_ptr<DiskFiles> _files;
    Stamps _noted;
};
