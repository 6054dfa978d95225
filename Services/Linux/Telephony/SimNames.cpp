#include "Linux/Telephony/SimNames.h"

#include "Linux/Telephony/SimCard.h"
#include "Linux/Telephony/Texts.h"

#include <fstream>
#include <glib.h>
#include <memory>
#include <sstream>

namespace {

constexpr std::size_t largestFile = 1 << 20;

/// A SIM's key, or its ICCID as it is or with the filler that some programs print.
std::string keyIn(const std::string& text)
{
    const std::string iccid = plainIccid(text);
    if (!iccid.empty())
        return iccid;
    const std::unique_ptr<char, decltype(&g_free)> key(g_ascii_strup(trimmed(text).c_str(), -1), g_free);
    return key.get();
}

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string content(largestFile, '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(file.gcount()));
    return content;
}

std::unordered_map<std::string, std::string> namesIn(const std::string& content)
{
    std::unordered_map<std::string, std::string> names;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t sign = line.find('=');
        const std::string name = sign == std::string::npos ? std::string() : plainLine(line.substr(sign + 1));
        if (sign > 0 && !name.empty())
            names.insert_or_assign(keyIn(line.substr(0, sign)), name);
    }
    return names;
}

bool areSame(const struct stat& left, const struct stat& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino && left.st_size == right.st_size
        && left.st_mtim.tv_sec == right.st_mtim.tv_sec && left.st_mtim.tv_nsec == right.st_mtim.tv_nsec;
}

} // namespace

void SimNames::catchUp()
{
    struct stat file { };
    // Anything but a regular file might never come to an end, or not even to a beginning.
    const bool isReadable = stat(_path.c_str(), &file) == 0 && S_ISREG(file.st_mode);
    if (!isReadable)
        file = {};
    if (areSame(file, _file))
        return;
    _file = file;
    _names = isReadable ? namesIn(contentOf(_path)) : decltype(_names)();
}

std::string SimNames::nameOf(const std::string& key, const std::string& iccid)
{
    catchUp();
    for (const std::string& name : { key, iccid }) {
        const auto found = _names.find(name);
        if (found != _names.end())
            return found->second;
    }
    return {};
}
