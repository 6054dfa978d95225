#pragma once

#include "Linux/BusTalks.h"
#include "Linux/TurnAnswer.h"
#include "Phone/PairedDevices.h"

#include <functional>
#include <optional>

/// The devices that BlueZ is paired with, on all its adapters: by name, and by address where names are alike. A device
/// that is paired with two adapters is one device. None while BlueZ is absent or does not answer.
class BluezDevices final : public PairedDevices {
public:
    /// `askOthers` begins the other talks that a page of devices needs, so that all are waited for together.
    BluezDevices(std::shared_ptr<BusTalks> systemBus, std::function<void()> askOthers)
        : _bus(std::move(systemBus))
        , _askOthers(std::move(askOthers))
        , _known(_bus->budget())
    {
    }

    /// Begins the talk when the last turn needed it: a page of devices that is built anew asks for its SIMs first.
    void askAhead();

    // PairedDevices
    std::vector<PairedDevice> devices() const override;

private:
    using Talk = BusTalk<std::vector<PairedDevice>>;

    Talk begun() const;

    std::shared_ptr<BusTalks> _bus;
    std::function<void()> _askOthers;
    mutable std::optional<Talk> _ahead;
    mutable TurnAnswer<std::vector<PairedDevice>> _known;
    mutable bool _isNeeded = false;
};
