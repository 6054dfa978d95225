#pragma once

#include "Linux/Desktop/DesktopHomeScreen.h"
#include "TemporaryDirectory.h"
#include "UIKit/UIImage.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

/// A machine with apps and icon themes in a folder of its own, as a phone.
class DesktopApps : public ::testing::Test {
protected:
    static constexpr const char* app = "org.example.App";

    DesktopApps();
    ~DesktopApps() override;

    /// The folder of the file is made where it is missing.
    void write(const std::string& file, const std::string& content);
    /// A desktop entry for the app, with that icon.
    void install(const std::string& icon, const std::string& dataFolder = "system");
    void writePicture(const std::string& file, const std::string& color, int width = 64, int height = 64);
    void writeDrawing(const std::string& file, const std::string& color);
    /// A theme in icons/ of the data folder, with directories for those sizes: "16", "64", "29@2x" or "scalable".
    void writeTheme(const std::string& theme, const std::string& directories, const std::string& more = "",
        const std::string& dataFolder = "system");
    /// As who installs something in a folder does.
    void touch(const std::string& folder);

    Value ask(const Value& app, const char* message = "com.vexil.tandem.app.icon");
    /// The icon of the app's row; null when the home screen has none.
    std::shared_ptr<UIImage> iconOf(const std::string& app);
    /// The colour in the middle of the icon, by name; "neutral" for the icon of apps that have none.
    std::string shown();

    TemporaryDirectory folder;
    std::string theme;
    DesktopHomeScreen screen;

private:
    std::filesystem::file_time_type _time = std::filesystem::file_time_type::clock::now();
};
