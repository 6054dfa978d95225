#include "Linux/Telephony/LinuxSubscriptions.h"

#include "Linux/Telephony/PhoneNumbers.h"
#include "Linux/Telephony/Texts.h"

#include <algorithm>
#include <set>

namespace {

constexpr const char* nameless = "SIM ";
constexpr char international = '+';

std::optional<std::string> present(const std::string& text)
{
    return text.empty() ? std::nullopt : std::optional(text);
}

std::string firstOf(std::initializer_list<std::string> texts)
{
    const auto found = std::ranges::find_if(texts, [](const std::string& text) { return !text.empty(); });
    return found == texts.end() ? std::string() : *found;
}

} // namespace

LinuxSubscriptions::LinuxSubscriptions(
    const std::shared_ptr<Bus>& systemBus, const std::shared_ptr<FirstWait>& group, std::string namesFile)
    : _modemManager(std::make_unique<ModemManagerState>(systemBus, group))
    , _ofono(std::make_unique<OfonoState>(systemBus, group))
    , _names(std::move(namesFile))
{
    _modemManager->setObserver([this] { compare(); });
    _ofono->setObserver([this] { compare(); });
}

bool LinuxSubscriptions::isAwaited() const
{
    return _given && (_modemManager->isAwaited() || (_ofono->isAwaited() && _modemManager->cards().empty()));
}

std::vector<SimCard> LinuxSubscriptions::cards() const
{
    auto cards = _modemManager->cards();
    return cards.empty() ? _ofono->cards() : cards;
}

const MobileProviders& LinuxSubscriptions::providers() const
{
    if (!_providers)
        _providers.emplace();
    return *_providers;
}

std::string LinuxSubscriptions::carrierOf(const SimCard& card) const
{
    const std::string told = firstOf({ plainLine(card.registeredName), plainLine(card.homeName) });
    return told.empty() ? plainLine(providers().nameOf(card.homeNetwork)) : told;
}

Subscription LinuxSubscriptions::describe(const SimCard& card, const std::string& key, std::size_t place) const
{
    const std::string carrier = carrierOf(card);
    const std::string number = plainLine(card.ownNumber);
    const std::string label = firstOf({ _names.nameOf(key, card.iccid), carrier, nameless + std::to_string(place) });
    if (!number.empty())
        _homeNetworks.insert_or_assign(number, card.homeNetwork);
    return { key, label, present(number), present(carrier), card.isDefaultVoice };
}

std::vector<Subscription> LinuxSubscriptions::described(const std::vector<SimCard>& cards) const
{
    std::vector<Subscription> sims;
    std::set<std::string> keys;
    for (const SimCard& card : cards) {
        // Rows and files are named by the key: a card that two modems tell of is one.
        const std::string key = simKeyOf(card.iccid);
        if (keys.insert(key).second)
            sims.push_back(describe(card, key, sims.size() + 1));
    }
    const bool isChosen = std::ranges::any_of(sims, &Subscription::userDefaultVoice);
    if (!isChosen && !sims.empty())
        sims.front().userDefaultVoice = true;
    return sims;
}

void LinuxSubscriptions::compare() const
{
    if (_given && _observer && *_given != described(cards()))
        _observer();
}

std::vector<Subscription> LinuxSubscriptions::subscriptions() const
{
    _wereGiven = true;
    _homeNetworks.clear();
    _given = described(cards());
    return *_given;
}

std::string LinuxSubscriptions::formattedNumber(const std::string& number) const
{
    const auto home = _homeNetworks.find(number);
    const bool needsRegion = home != _homeNetworks.end() && !number.starts_with(international);
    return formattedPhoneNumber(number, needsRegion ? providers().regionOf(home->second) : std::string());
}
