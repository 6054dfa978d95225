#include "Place.h"

#include "AccessibleTree.h"

namespace {

constexpr int windowHeight = 1400;
const QString logoRow = QStringLiteral("LOGO+6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");
const QString headset = QStringLiteral("12:34:56:AB:CD:03");

} // namespace

const std::vector<Place>& everyPlace()
{
    static const QString sims = QStringLiteral("TDSimSettingsController");
    static const QStringList logoPicked { "Change", "Photo 1", "Choose" };
    static const std::vector<Place> places {
        { "Root", {}, {} },
        { "RootTurnedOff", { "TandemEnabled" }, {} },
        { "RootTurnedOnAgain", { "TandemEnabled", "TandemEnabled" }, {} },
        { "Calls", { "Calls" }, {} },
        { "Messages", { "Messages" }, {} },
        { "Bluetooth", { "Bluetooth" }, {} },
        { "BluetoothWithADevice", { "Bluetooth", headset }, {} },
        { "Sims", { sims }, {} },
        { "SimsWithALogo", { sims, logoRow }, logoPicked },
        { "Misc", { "Misc" }, {} },
        { "Products", { "VexilProducts" }, {} },
        { "ShareSheet", {}, { "Share" } },
        { "Shared", {}, { "Share", "Copy" } },
        { "Alert", { "Misc", "EmailLog" }, {} },
        { "ChangeLogo", { sims, logoRow }, {} },
        { "ResetLogo", { sims, logoRow }, { "Change", "Photo 1", "Choose", "Carrier Logo" } },
        { "ResetAllLogos", { sims, logoRow }, { "Change", "Photo 1", "Choose", "Reset All Logos" } },
        { "Photos", { sims, logoRow }, { "Change" } },
        { "Crop", { sims, logoRow }, { "Change", "Photo 1" } },
    };
    return places;
}

void PrintTo(const Place& place, std::ostream* stream)
{
    *stream << place.name;
}

std::string nameOf(const testing::TestParamInfo<Place>& place)
{
    return place.param.name;
}

void PlaceTest::go(const Place& place)
{
    openWindow();
    _window->resize(_window->width(), windowHeight);
    settle();
    for (const QString& row : place.rows) {
        ASSERT_TRUE(item(row)) << row.toStdString();
        item(row)->activate();
        settle();
    }
    for (const QString& name : place.buttons) {
        QAccessibleInterface* button = findAccessible(accessibleTreeOf(*_window), QAccessible::Button, name);
        ASSERT_TRUE(button) << name.toStdString();
        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        settle();
    }
}
