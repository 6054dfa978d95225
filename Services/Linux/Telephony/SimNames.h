#pragma once

#include <chrono>
#include <string>
#include <sys/stat.h>
#include <unordered_map>

/// The names that the user gives SIMs. They stand in a file, one a line: KEY=NAME, where KEY is the SIM's key or its
/// ICCID. The file may be missing. It is read again when it has changed.
class SimNames {
public:
    explicit SimNames(std::string path)
        : _path(std::move(path))
    {
    }

    /// Empty when the user has given none.
    std::string nameOf(const std::string& key, const std::string& iccid);

private:
    void catchUp();

    std::string _path;
    /// Of the file that the names were read from.
    struct stat _file { };
    std::unordered_map<std::string, std::string> _names;
};
