#pragma once

#include "Phone/Result.h"
#include "Runtime/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What tells one state of a file from another without reading it.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    /// Nanoseconds since 1970.
    std::int64_t modified = 0;
    /// The same for the last change of anything about the file, which no program can set back.
    std::int64_t changed = 0;

    bool operator==(const FileStamp&) const = default;
};

/// The phone's files. What fails tells the system's error number and its text. Paths are the phone's own, absolute
/// ("/var/mobile/..."), and lie below a root of the host's choice; no path, whatever ".." it holds, leads out of that
/// root.
class Files {
public:
    virtual ~Files() = default;

    /// The content of a regular file; nothing when it is missing, unreadable or no regular file.
    virtual std::optional<Bytes> read(const std::string& path) const = 0;
    /// Nothing when the file is missing.
    virtual std::optional<FileStamp> stamp(const std::string& path) const = 0;
    /// Writes over the file in place: opened without truncation, overwritten, cut to its new length, made if missing.
    /// When the disk or a limit refuses the longer content, the old content is still there, whole.
    virtual Result<void> overwrite(const std::string& path, const Bytes& bytes) = 0;
    /// Replaces the file by way of a temporary file in the same directory: readers see the old content or the new.
    virtual Result<void> replace(const std::string& path, const Bytes& bytes) = 0;
    /// Adds the bytes at the end of the file, which is made if missing, and gives its new length in bytes. When the
    /// disk or a limit refuses them, the file is as long as before.
    virtual Result<std::size_t> append(const std::string& path, const Bytes& bytes) = 0;
    /// Something stands at the path: a file or a directory alike.
    virtual bool exists(const std::string& path) const = 0;
    virtual Result<void> createDirectory(const std::string& path) = 0;
    /// Removes a file, or a directory with all it holds.
    virtual Result<void> remove(const std::string& path) = 0;
};
