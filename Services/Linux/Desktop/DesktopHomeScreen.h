#pragma once

#include "Phone/AppIcons.h"
#include "Phone/HomeScreen.h"

#include <functional>
#include <string>
#include <vector>

/// Answers for the icon of any app with an image that stands for it, so that all app rows begin alike; DesktopIcons
/// draws it.
class DesktopHomeScreen final : public HomeScreen {
public:
    // HomeScreen
    Value ask(const std::string& service, const std::string& message, const Value& userInfo) override;
};

/// Draws the icon that an app's desktop entry names, looked up in the icon themes. An app that is not installed, or has
/// no icon that can be drawn, gets a neutral one.
class DesktopIcons final : public AppIcons {
public:
    /// The name of the theme that the user has chosen; empty for none. Called for every icon.
    using ChosenTheme = std::function<std::string()>;

    /// The data folders of the user and of the system, the first before the others.
    DesktopIcons(std::vector<std::string> dataFolders, ChosenTheme theme);

    // AppIcons
    std::shared_ptr<const Bitmap> icon(const std::string& app, double points, double scale) override;

private:
    /// Empty when no entry of that name is installed, or it names no icon.
    std::string iconNameOf(const std::string& app) const;

    std::vector<std::string> _dataFolders;
    ChosenTheme _theme;
};
