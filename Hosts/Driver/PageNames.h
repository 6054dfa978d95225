#pragma once

#include <array>
#include <string_view>

/// The pages by the names that users of the driver give them.
struct PageName {
    std::string_view name;
    std::string_view className;
    /// The page definition; empty for a page that builds its rows in code.
    std::string_view definition;
};

inline constexpr std::array<PageName, 6> pageNames { {
    { "root", "TDRootListController", "Root" },
    { "calls", "TDCallsSettingsController", "Calls" },
    { "messages", "TDMessagesSettingsController", "Messages" },
    { "bluetooth", "TDBluetoothDevicesController", "" },
    { "sims", "TDSimSettingsController", "" },
    { "misc", "TDMiscSettingsController", "Misc" },
} };

/// Null for a name that is none.
inline const PageName* pageNamed(std::string_view name)
{
    for (const PageName& page : pageNames) {
        if (page.name == name)
            return &page;
    }
    return nullptr;
}
