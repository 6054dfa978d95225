#pragma once

#include "Storage/DiskFiles.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The phone's files as one turn sees them: the state of a file is asked of the disk once, and the files that all parts
/// of the product ask for are read once and, when the turn has written them, not read back. Between turns, every
/// question goes to the disk.
class TurnFiles final : public Files {
public:
    /// `readOnce` names the files that a turn reads once. All others are read whenever they are asked for.
    TurnFiles(std::shared_ptr<DiskFiles> disk, const std::vector<std::string>& readOnce);

    void beginTurn();
    void endTurn();

    /// Where the file lies on this machine.
    std::string hostPath(const std::string& path) const { return _disk->hostPath(path); }

    // Files
    std::optional<Bytes> read(const std::string& path) const override;
    std::optional<FileStamp> stamp(const std::string& path) const override;
    std::optional<FileError> overwrite(const std::string& path, const Bytes& bytes) override;
    std::optional<FileError> replace(const std::string& path, const Bytes& bytes) override;
    std::optional<FileError> append(const std::string& path, const Bytes& bytes, std::size_t& length) override;
    bool exists(const std::string& path) const override { return _disk->exists(path); }
    std::optional<FileError> createDirectory(const std::string& path) override;
    std::optional<FileError> remove(const std::string& path) override;

private:
    /// What is known in this turn of one of the files that are read once.
    struct Content {
        bool isKnown = false;
        std::optional<Bytes> bytes;
    };

    /// Null for a file that is read whenever it is asked for, and between turns.
    Content* contentOf(const std::string& path) const;
    /// The file was written: it holds the bytes or, after an error, what nobody knows.
    void note(const std::string& path, const Bytes& bytes, const std::optional<FileError>& error);
    void forget();

    std::shared_ptr<DiskFiles> _disk;
    bool _inTurn = false;
    /// By the paths on this machine, which have one spelling.
    mutable std::map<std::string, Content> _contents;
    mutable std::map<std::string, std::optional<FileStamp>> _stamps;
};
