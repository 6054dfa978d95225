#include "TemporaryDirectory.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <sys/stat.h>

TemporaryDirectory::TemporaryDirectory()
    : _path((std::filesystem::temp_directory_path() / "tandem-test-XXXXXX").string())
{
    constexpr mode_t readableByAll = 0755;
    if (!mkdtemp(_path.data()) || chmod(_path.c_str(), readableByAll) != 0)
        throw std::runtime_error("no temporary directory");
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

std::vector<std::string> TemporaryDirectory::names(std::string_view directory) const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path(directory)))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void TemporaryDirectory::write(std::string_view name, std::string_view content) const
{
    std::ofstream(path(name), std::ios::binary) << content;
}

std::string TemporaryDirectory::read(std::string_view name) const
{
    std::ifstream file(path(name), std::ios::binary);
    if (!file)
        return "(missing)";
    return { std::istreambuf_iterator<char>(file), {} };
}

Bytes bytesOf(std::string_view text)
{
    const auto* begin = reinterpret_cast<const std::uint8_t*>(text.data());
    return { begin, begin + text.size() };
}

std::string textOf(const Bytes& bytes)
{
    return { reinterpret_cast<const char*>(bytes.data()), bytes.size() };
}
