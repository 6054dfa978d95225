#include "Linux/Desktop/DesktopHomeScreen.h"

#include "Foundation/NSKeyedArchiver.h"
#include "Phone/Phone.h"
#include "Pictures/ModuleImages.h"
#include "UIKit/UIImage.h"

#include <filesystem>
#include <gio/gdesktopappinfo.h>

namespace {

struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
};

bool isEntryName(const std::string& app)
{
    return !app.empty() && app.find('/') == std::string::npos && !app.starts_with('.');
}

/// A name or a path, as the entry has it; empty for none.
std::string iconIn(GDesktopAppInfo* entry)
{
    GIcon* icon = entry ? g_app_info_get_icon(G_APP_INFO(entry)) : nullptr;
    if (G_IS_THEMED_ICON(icon))
        return g_themed_icon_get_names(G_THEMED_ICON(icon))[0];
    const char* file = G_IS_FILE_ICON(icon) ? g_file_peek_path(g_file_icon_get_file(G_FILE_ICON(icon))) : nullptr;
    return file ? file : "";
}

std::vector<std::string> themeFolders(const std::vector<std::string>& dataFolders)
{
    std::vector<std::string> folders { std::string(g_get_home_dir()) + "/.icons" };
    for (const std::string& folder : dataFolders)
        folders.push_back(folder + "/icons");
    return folders;
}

std::vector<std::string> looseFolders(const std::vector<std::string>& dataFolders)
{
    std::vector<std::string> folders;
    for (const std::string& folder : dataFolders)
        folders.insert(folders.end(), { folder + "/icons", folder + "/pixmaps" });
    return folders;
}

} // namespace

Value DesktopHomeScreen::ask(const std::string& service, const std::string& message, const Value& userInfo)
{
    const auto* app = userInfo[AppIconRequest::data].string();
    if (service != AppIconRequest::service || message != AppIconRequest::message || !app || !isEntryName(*app))
        return {};
    const auto icon = UIImage::imageWithIconOfApp(*app, Phone::current().screenScale);
    auto archive = icon ? NSKeyedArchiver::archivedDataWithRootObject(icon) : std::nullopt;
    return archive ? Value(Dictionary { { AppIconRequest::data, std::move(*archive) } }) : Value();
}

DesktopIcons::DesktopIcons(std::vector<std::string> dataFolders, ChosenTheme theme)
    : _dataFolders(std::move(dataFolders))
    , _theme(std::move(theme))
{
}

std::shared_ptr<const Bitmap> DesktopIcons::icon(const std::string& app, double points, double scale)
{
    return drawnIcon(
        { iconNameOf(app), _theme(), themeFolders(_dataFolders), looseFolders(_dataFolders), points, scale });
}

std::string DesktopIcons::iconNameOf(const std::string& app) const
{
    for (const std::string& folder : _dataFolders) {
        const std::string file = folder + "/applications/" + app + ".desktop";
        std::error_code failure;
        if (!std::filesystem::is_regular_file(file, failure))
            continue;
        const std::unique_ptr<GDesktopAppInfo, Release> entry(g_desktop_app_info_new_from_filename(file.c_str()));
        return iconIn(entry.get());
    }
    return {};
}
