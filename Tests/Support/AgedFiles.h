#pragma once

#include "Phone/Files.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The files of another service as if nobody had changed them for an hour, so that what was made of them can be kept.
/// Remembers which were read.
class AgedFiles final : public Files {
public:
    explicit AgedFiles(std::shared_ptr<Files> files)
        : _files(std::move(files))
    {
    }

    /// The paths that were read since the last call, in their order.
    std::vector<std::string> takeRead() { return std::exchange(_read, {}); }

    // Files
    std::optional<Bytes> read(const std::string& path) const override
    {
        _read.push_back(path);
        return _files->read(path);
    }
    std::optional<FileStamp> stamp(const std::string& path) const override
    {
        auto stamp = _files->stamp(path);
        if (stamp) {
            stamp->modified -= hour;
            stamp->changed -= hour;
        }
        return stamp;
    }
    Result<void> overwrite(const std::string& path, const Bytes& bytes) override
    {
        return _files->overwrite(path, bytes);
    }
    Result<void> replace(const std::string& path, const Bytes& bytes) override { return _files->replace(path, bytes); }
    Result<std::size_t> append(const std::string& path, const Bytes& bytes) override
    {
        return _files->append(path, bytes);
    }
    bool exists(const std::string& path) const override { return _files->exists(path); }
    Result<void> createDirectory(const std::string& path) override { return _files->createDirectory(path); }
    Result<void> remove(const std::string& path) override { return _files->remove(path); }

private:
    static constexpr std::int64_t hour = 3'600'000'000'000;

    std::shared_ptr<Files> _files;
    mutable std::vector<std::string> _read;
};
