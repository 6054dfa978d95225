#pragma once

#include "Linux/Telephony/MobileProviders.h"
#include "Linux/Telephony/ModemManagerState.h"
#include "Linux/Telephony/OfonoState.h"
#include "Linux/Telephony/SimNames.h"
#include "Phone/Subscriptions.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// The SIMs that ModemManager tells of or, where it has none, oFono.
class LinuxSubscriptions final : public Subscriptions {
public:
    /// For the file of the user's own names see SimNames.
    LinuxSubscriptions(
        const std::shared_ptr<Bus>& systemBus, const std::shared_ptr<FirstWait>& group, std::string namesFile);

    /// Called in a `takeIn` when the SIMs are others than those that were last given.
    void setObserver(std::function<void()> observer) { _observer = std::move(observer); }
    /// Whether the SIMs have been asked for since this was last called.
    bool wereGiven() { return std::exchange(_wereGiven, false); }
    /// Whether somebody has asked for the SIMs, and they may still come in time.
    bool isAwaited() const;

    // Subscriptions
    std::vector<Subscription> subscriptions() const override;
    /// By the rules of the region of the SIM that has the number; an international number needs none.
    std::string formattedNumber(const std::string& number) const override;

private:
    std::vector<SimCard> cards() const;
    std::vector<Subscription> described(const std::vector<SimCard>& cards) const;
    Subscription describe(const SimCard& card, const std::string& key, std::size_t place) const;
    const MobileProviders& providers() const;
    std::string carrierOf(const SimCard& card) const;
    void compare() const;

    std::unique_ptr<ModemManagerState> _modemManager;
    std::unique_ptr<OfonoState> _ofono;
    std::function<void()> _observer;
    mutable bool _wereGiven = false;
    mutable SimNames _names;
    mutable std::optional<std::vector<Subscription>> _given;
    /// Read when the first SIM needs it.
    mutable std::optional<MobileProviders> _providers;
    /// The home networks of the SIMs that were last asked for, by number.
    mutable std::unordered_map<std::string, std::string> _homeNetworks;
};
