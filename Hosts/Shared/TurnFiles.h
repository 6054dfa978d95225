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
    Result<void> overwrite(const std::string& path, const Bytes& bytes) override;
    Result<void> replace(const std::string& path, const Bytes& bytes) override;
    Result<std::size_t> append(const std::string& path, const Bytes& bytes) override;
    bool exists(const std::string& path) const override { return _disk->exists(path); }
    Result<void> createDirectory(const std::string& path) override;
    Result<void> remove(const std::string& path) override;

private:
    /// What is known in this turn of one of the files that are read once.
    struct Content {
        bool isKnown = false;
        std::optional<Bytes> bytes;
    };

    /// Null for a file that is read whenever it is asked for, and between turns.
    Content* contentOf(const std::string& path) const;
    /// The file was written: it holds the bytes or, when that failed, what nobody knows.
    void note(const std::string& path, const Bytes& bytes, const Result<void>& written);
    void forget();

    std::shared_ptr<DiskFiles> _disk;
    bool _inTurn = false;
    /// By the paths on this machine, which have one spelling.
    mutable std::map<std::string, Content> _contents;
    mutable std::map<std::string, std::optional<FileStamp>> _stamps;
};
