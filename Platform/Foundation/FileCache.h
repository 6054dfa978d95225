#pragma once

#include "Phone/Files.h"

#include <map>
#include <optional>
#include <string>

/// False for a file that was changed a moment ago: the clock of files goes in steps, so it may be changed once more
/// and keep its stamp.
bool isSettled(const FileStamp& stamp);

/// What was made of files, by their paths, kept while each file stays as it was.
template <class T>
class FileCache {
public:
    /// What `make` makes of the file with that stamp. It is called where the file is new, was changed, or may have been
    /// changed unnoticed. A file without a stamp is missing: that is a T(), and nothing is kept.
    template <class Make>
    T get(const std::string& path, const std::optional<FileStamp>& stamp, Make make)
    {
        if (!stamp) {
            _kept.erase(path);
            return T();
        }
        Entry& entry = _kept[path];
        if (entry.stamp != stamp) {
            entry.content = make();
            entry.stamp = isSettled(*stamp) ? stamp : std::nullopt;
        }
        return entry.content;
    }

private:
    struct Entry {
        /// Of the file that the content was made of; nothing when that cannot be told.
        std::optional<FileStamp> stamp;
        T content;
    };

    std::map<std::string, Entry> _kept;
};
