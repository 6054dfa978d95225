#include "Demo/DemoFile.h"

#include <filesystem>
#include <fstream>

namespace {

/// Asked before the file is opened, because opening a pipe waits for whoever writes into it.
Result<void> checkFile(const std::string& path, std::size_t limit)
{
    std::error_code failure;
    const auto type = std::filesystem::status(path, failure).type();
    if (type == std::filesystem::file_type::not_found)
        return Failure { "no such file" };
    if (type != std::filesystem::file_type::regular)
        return Failure { "not a regular file" };
    const auto size = std::filesystem::file_size(path, failure);
    if (failure || size > limit)
        return Failure { "too large" };
    return {};
}

} // namespace

Result<Bytes> contentOfFile(const std::string& path, std::size_t limit)
{
    if (const auto checked = checkFile(path, limit); !checked)
        return checked.failure();
    std::error_code failure;
    Bytes bytes(std::filesystem::file_size(path, failure));
    std::ifstream stream(path, std::ios::binary);
    if (!stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())))
        return Failure { "cannot be read" };
    return bytes;
}
