#pragma once

#include "Linux/BusTalks.h"
#include "Linux/Telephony/MobileProviders.h"
#include "Linux/Telephony/SimCard.h"
#include "Linux/TurnAnswer.h"
#include "Phone/Subscriptions.h"

#include <QHash>
#include <QString>

#include <functional>
#include <optional>

/// The key of a SIM: a UUID made of its ICCID, the same in every slot and after every start.
std::string simKeyOf(const QString& iccid);

/// The SIMs that ModemManager tells of or, where it has none, oFono.
class LinuxSubscriptions final : public Subscriptions {
public:
    /// The names that the user gives SIMs stand in the file, one a line: KEY=NAME, where KEY is the SIM's key or its
    /// ICCID. It may be missing.
    LinuxSubscriptions(std::shared_ptr<BusTalks> systemBus, QString namesFile)
        : _bus(std::move(systemBus))
        , _namesFile(std::move(namesFile))
        , _known(_bus->budget())
    {
    }

    /// Begins the other talks that a page of SIMs may need, so that all are waited for together.
    void setAskOthers(std::function<void()> askOthers) { _askOthers = std::move(askOthers); }
    /// Begins the talks with the daemons, which are waited for when the SIMs are asked for in the same turn.
    void askAhead();

    // Subscriptions
    std::vector<Subscription> subscriptions() const override;
    /// By the rules of the region of the SIM that has the number; an international number needs none.
    std::string formattedNumber(const std::string& number) const override;

private:
    struct Talks {
        BusTalk<std::vector<SimCard>> modemManager;
        BusTalk<std::vector<SimCard>> ofono;
    };

    Talks begun() const;
    const std::vector<SimCard>& cards() const;
    const MobileProviders& providers() const;
    QString carrierOf(const SimCard& card) const;

    std::shared_ptr<BusTalks> _bus;
    QString _namesFile;
    std::function<void()> _askOthers;
    mutable std::optional<Talks> _ahead;
    mutable TurnAnswer<std::vector<SimCard>> _known;
    /// Read when the first SIM needs it.
    mutable std::optional<MobileProviders> _providers;
    /// The home regions of the SIMs that were last asked for, by number.
    mutable QHash<QString, QString> _regions;
};
