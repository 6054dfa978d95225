#pragma once

#include "Runtime/Value.h"

#include <string>
#include <string_view>
#include <vector>

/// An empty directory of the test's own, readable by all users, that goes away with everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::string& path() const { return _path; }
    std::string path(std::string_view name) const { return _path + "/" + std::string(name); }
    /// The names in the directory, or in one within it, sorted.
    std::vector<std::string> names(std::string_view directory = ".") const;

    void write(std::string_view name, std::string_view content) const;
    /// The content, or "(missing)".
    std::string read(std::string_view name) const;

private:
    std::string _path;
};

Bytes bytesOf(std::string_view text);
std::string textOf(const Bytes& bytes);
