#include "Linux/Desktop/KeyFile.h"

#include <filesystem>
#include <fstream>
#include <glib.h>
#include <memory>
#include <sstream>

namespace {

constexpr std::uintmax_t largestFile = 1U << 20U;

/// Empty for a file that is missing, larger or no regular one. Opening a pipe would wait for whoever writes into it.
std::string textOfFile(const std::string& file)
{
    std::error_code failure;
    if (!std::filesystem::is_regular_file(file, failure) || std::filesystem::file_size(file, failure) > largestFile)
        return {};
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

/// The lines of the group, its own first. The parser refuses a whole file for one line that it does not know, and
/// desktops have such lines: groups within groups, keys with flags.
std::string linesOfGroup(const std::string& text, const std::string& group)
{
    std::string lines;
    std::istringstream stream(text);
    bool isInside = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with('['))
            isInside = line.starts_with("[" + group + "]");
        if (isInside)
            lines += line + "\n";
    }
    return lines;
}

} // namespace

std::string valueInKeyFile(const std::string& file, const std::string& group, const std::string& key)
{
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> keys(g_key_file_new(), &g_key_file_free);
    const std::string lines = linesOfGroup(textOfFile(file), group);
    g_key_file_load_from_data(keys.get(), lines.data(), lines.size(), G_KEY_FILE_NONE, nullptr);
    const std::unique_ptr<char, decltype(&g_free)> value(
        g_key_file_get_string(keys.get(), group.c_str(), key.c_str(), nullptr), &g_free);
    return value ? value.get() : "";
}
