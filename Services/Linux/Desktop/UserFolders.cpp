#include "Linux/Desktop/UserFolders.h"

#include <glib.h>

namespace {

std::vector<std::string> folders(const char* own, const char* const* others)
{
    std::vector<std::string> all { own };
    for (; *others; ++others)
        all.emplace_back(*others);
    return all;
}

} // namespace

std::vector<std::string> dataFolders()
{
    return folders(g_get_user_data_dir(), g_get_system_data_dirs());
}

std::vector<std::string> configurationFolders()
{
    return folders(g_get_user_config_dir(), g_get_system_config_dirs());
}
