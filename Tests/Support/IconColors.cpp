// Draws the icons of apps as `--phone linux` does: reads the name of an app a line, and prints the colour in the middle
// of its icon a line, as "#ff0000", or "none".

#include "Linux/LinuxPhone.h"

#include <cstdio>
#include <iostream>

namespace {

constexpr double points = 29;
constexpr double scale = 2;

std::string colorOf(const Bitmap& icon)
{
    const auto middle = (static_cast<std::size_t>(icon.height) / 2 * icon.width + icon.width / 2) * 4;
    char color[8];
    std::snprintf(
        color, sizeof color, "#%02x%02x%02x", icon.rgba[middle], icon.rgba[middle + 1], icon.rgba[middle + 2]);
    return color;
}

} // namespace

int main()
{
    LinuxPhone machine([](const std::string& path) { return path; });
    for (std::string app; std::getline(std::cin, app);) {
        machine.beginTurn();
        const auto icon = machine.phone().appIcons->icon(app, points, scale);
        machine.endTurn();
        std::cout << (icon ? colorOf(*icon) : "none") << std::endl;
    }
}
