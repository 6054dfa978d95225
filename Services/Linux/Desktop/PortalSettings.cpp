#include "Linux/Desktop/PortalSettings.h"

#include "Linux/Desktop/Portal.h"

#include <utility>

namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* changeType = "(ssv)";
constexpr const char* groupsType = "a{sa{sv}}";

} // namespace

PortalSettings::PortalSettings(std::shared_ptr<Bus> sessionBus, std::shared_ptr<FirstWait> group)
    : DaemonState(std::move(sessionBus), portalName, group)
    , _wait(std::move(group))
{
}

const BusProperties& PortalSettings::group(const std::string& name)
{
    ask();
    if (!std::exchange(_hasWaited, true))
        _wait->until([this] { return !isAwaited(); });
    return _groups[name];
}

void PortalSettings::listen()
{
    hear(portalPath, settingsInterface, "SettingChanged", [this](const BusSignal& heard) { takeChange(heard); });
}

void PortalSettings::request()
{
    _changes.emplace();
    askFor(portalPath, settingsInterface, "ReadAll",
        Variant::ofTuple({ Variant::ofTexts({ appearanceGroup, interfaceGroup }) }),
        [this](const BusReply& reply) { take(reply); });
}

void PortalSettings::take(const BusReply& reply)
{
    const auto changes = std::exchange(_changes, std::nullopt);
    auto groups = interfacesIn(reply.value(groupsType));
    if (!groups)
        return;
    _groups = std::move(*groups);
    for (const auto& [group, settings] : *changes) {
        for (const auto& [key, value] : settings)
            _groups[group].insert_or_assign(key, value);
    }
    noteChange();
}

void PortalSettings::takeChange(const BusSignal& heard)
{
    if (!heard.values.is(changeType))
        return;
    const std::string group = *heard.values[0].text();
    if (group != appearanceGroup && group != interfaceGroup)
        return;
    const std::string key = *heard.values[1].text();
    _groups[group].insert_or_assign(key, heard.values[2]);
    if (_changes)
        (*_changes)[group].insert_or_assign(key, heard.values[2]);
    noteChange();
}
