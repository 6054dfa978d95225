#include "Linux/Desktop/ChosenIconTheme.h"

#include "Linux/Desktop/KeyFile.h"
#include "Linux/Desktop/UserFolders.h"

#include <array>
#include <cstdlib>

namespace {

constexpr const char* desktopVariable = "XDG_CURRENT_DESKTOP";
constexpr const char* plasmaDesktop = ":KDE:";

/// A file of settings in a folder of configurations, and where it says the theme.
struct SettingsFile {
    const char* name;
    const char* group;
    const char* key;
};

constexpr SettingsFile plasma { "/kdeglobals", "Icons", "Theme" };
constexpr SettingsFile gtk4 { "/gtk-4.0/settings.ini", "Settings", "gtk-icon-theme-name" };
constexpr SettingsFile gtk3 { "/gtk-3.0/settings.ini", "Settings", "gtk-icon-theme-name" };

bool isOnPlasma()
{
    const char* desktops = std::getenv(desktopVariable);
    return desktops && (":" + std::string(desktops) + ":").find(plasmaDesktop) != std::string::npos;
}

std::array<SettingsFile, 3> filesInOrder()
{
    if (isOnPlasma())
        return { plasma, gtk4, gtk3 };
    return { gtk4, gtk3, plasma };
}

} // namespace

std::string chosenIconTheme(const std::string& namedByPortal)
{
    if (!namedByPortal.empty())
        return namedByPortal;
    for (const SettingsFile& file : filesInOrder()) {
        for (const std::string& folder : configurationFolders()) {
            std::string theme = valueInKeyFile(folder + file.name, file.group, file.key);
            if (!theme.empty())
                return theme;
        }
    }
    return {};
}
