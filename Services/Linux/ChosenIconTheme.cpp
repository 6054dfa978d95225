#include "Linux/ChosenIconTheme.h"

#include "Linux/CountedTime.h"
#include "Linux/KeyFile.h"
#include "Linux/UserFolders.h"

#include <array>

namespace {

constexpr const char* portalKey = "icon-theme";
constexpr const char* desktopVariable = "XDG_CURRENT_DESKTOP";
constexpr const char* plasmaDesktop = "KDE";

/// A file of settings in a folder of configurations, and where it says the theme.
struct SettingsFile {
    const char* name;
    const char* group;
    const char* key;
};

constexpr SettingsFile plasma { "/kdeglobals", "Icons", "Theme" };
constexpr SettingsFile gtk4 { "/gtk-4.0/settings.ini", "Settings", "gtk-icon-theme-name" };
constexpr SettingsFile gtk3 { "/gtk-3.0/settings.ini", "Settings", "gtk-icon-theme-name" };

std::array<SettingsFile, 3> filesInOrder()
{
    const QStringList desktops = qEnvironmentVariable(desktopVariable).split(QLatin1Char(':'));
    if (desktops.contains(QLatin1String(plasmaDesktop)))
        return { plasma, gtk4, gtk3 };
    return { gtk4, gtk3, plasma };
}

} // namespace

QString chosenIconTheme(PortalSettings& portal, WaitBudget& budget)
{
    const QString told = QString::fromStdString(textOf(portal.group(PortalSettings::interfaceGroup), portalKey));
    if (!told.isEmpty())
        return told;
    const CountedTime counted(budget);
    for (const SettingsFile& file : filesInOrder()) {
        for (const QString& folder : configurationFolders()) {
            const KeyFile settings(folder + QLatin1String(file.name));
            const QString theme = settings.value(QLatin1String(file.group), QLatin1String(file.key));
            if (!theme.isEmpty())
                return theme;
        }
    }
    return {};
}
