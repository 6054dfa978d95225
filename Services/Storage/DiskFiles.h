#pragma once

#include "Phone/Files.h"

#include <string>

/// The phone's files in a directory of the host's disk, its root: "/var/mobile" is "var/mobile" in there.
///
/// "." and ".." are resolved in the path alone, before it is joined to the root; symbolic links in the root lead where
/// they lead. A path that holds a NUL (EINVAL) or a component of more than 255 bytes (ENAMETOOLONG) is refused, not
/// cut.
class DiskFiles final : public Files {
public:
    /// The root need not exist yet: createDirectory makes it.
    explicit DiskFiles(std::string root);

    /// Where the file lies on the host. A path that is refused has one too, and nothing lies there.
    std::string hostPath(const std::string& phonePath) const;

    /// Nothing for a file of more than 1 GiB, too.
    std::optional<Bytes> read(const std::string& path) const override;
    std::optional<FileStamp> stamp(const std::string& path) const override;
    Result<void> overwrite(const std::string& path, const Bytes& bytes) override;
    /// The same for a caller that has just read the file, whose content is then not read once more. It is written back
    /// when the new content cannot be written whole.
    Result<void> overwrite(const std::string& path, const Bytes& bytes, const std::optional<Bytes>& oldBytes);
    /// Keeps the permissions of the file it replaces. A symbolic link is replaced itself.
    Result<void> replace(const std::string& path, const Bytes& bytes) override;
    Result<std::size_t> append(const std::string& path, const Bytes& bytes) override;
    /// A link to nothing does not exist.
    bool exists(const std::string& path) const override;
    /// With its parents. A directory that is there already will do.
    Result<void> createDirectory(const std::string& path) override;
    /// The root itself is refused (EBUSY). A symbolic link is removed itself.
    Result<void> remove(const std::string& path) override;

private:
    std::string _root;
};
