#pragma once

#include "Linux/Bus/DaemonState.h"

#include <memory>
#include <optional>
#include <string>

/// The settings of the user's desktop, by way of the settings portal, followed as they change. None while no portal has
/// told any; a portal that goes away leaves what it has told, and one that comes, or comes back, is asked.
class PortalSettings final : public DaemonState {
public:
    static constexpr const char* appearanceGroup = "org.freedesktop.appearance";
    static constexpr const char* interfaceGroup = "org.gnome.desktop.interface";

    PortalSettings(std::shared_ptr<Bus> sessionBus, std::shared_ptr<FirstWait> group);

    /// The settings of one of the groups, by key. The first time of all, the portal's answer is waited for.
    const BusProperties& group(const std::string& name);

protected:
    // DaemonState
    void listen() override;
    void request() override;

private:
    void take(const BusReply& reply);
    void takeChange(const BusSignal& heard);

    std::shared_ptr<FirstWait> _wait;
    bool _hasWaited = false;
    BusInterfaces _groups;
    /// The changes since the portal was asked, which its answer may not contain; absent when no answer is due.
    std::optional<BusInterfaces> _changes;
};
