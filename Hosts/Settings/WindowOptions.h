#pragma once

#include "Phone/Result.h"
#include "Shared/HostOptions.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

/// What the Settings application was asked to do.
struct WindowOptions {
    HostOptions host;
    /// The folder for pictures of every page; absent for a window.
    std::optional<QString> pictures;
    /// Of the pictures, in points.
    int width = 375;
    /// Absent for the system's.
    std::optional<double> textScale;
    bool dark = false;
    bool mirrored = false;
    bool reducedMotion = false;
    /// For measuring: the window closes when it has been seen once.
    bool untilFirstFrame = false;
    bool help = false;

    /// Fails with what is wrong for words that are no options of ours. Options of the toolkit, with one dash, are left
    /// to it.
    static Result<WindowOptions> parse(const std::vector<std::string>& words);
    static QString usage();
};
