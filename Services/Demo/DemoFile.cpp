#include "Demo/DemoFile.h"

#include <filesystem>
#include <fstream>

namespace {

/// Asked before the file is opened, because opening a pipe waits for whoever writes into it.
std::string problemOfFile(const std::string& path, std::size_t limit)
{
    std::error_code failure;
    const auto type = std::filesystem::status(path, failure).type();
    if (type == std::filesystem::file_type::not_found)
        return "no such file";
    if (type != std::filesystem::file_type::regular)
        return "not a regular file";
    const auto size = std::filesystem::file_size(path, failure);
    return failure || size > limit ? "too large" : "";
}

} // namespace

std::optional<Bytes> contentOfFile(const std::string& path, std::size_t limit, std::string& problem)
{
    problem = problemOfFile(path, limit);
    if (!problem.empty())
        return std::nullopt;
    std::error_code failure;
    Bytes bytes(std::filesystem::file_size(path, failure));
    std::ifstream stream(path, std::ios::binary);
    if (!stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()))) {
        problem = "cannot be read";
        return std::nullopt;
    }
    return bytes;
}
