#include "Linux/Telephony/ModemManagerState.h"

#include "Linux/Telephony/Texts.h"

#include <algorithm>
#include <set>
#include <utility>

namespace {

constexpr const char* modemManager = "org.freedesktop.ModemManager1";
constexpr const char* managerPath = "/org/freedesktop/ModemManager1";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* propertiesType = "a{sv}";
constexpr const char* modemInterface = "org.freedesktop.ModemManager1.Modem";
constexpr const char* networkInterface = "org.freedesktop.ModemManager1.Modem.Modem3gpp";
constexpr const char* simInterface = "org.freedesktop.ModemManager1.Sim";
constexpr const char* noObject = "/";
/// Registration states of a modem in its home network: for everything, for SMS alone, for fallback calls alone.
constexpr std::int64_t homeStates[] = { 1, 6, 9 };

struct Modem {
    std::string path;
    BusProperties properties;
    BusProperties network;
};

/// A slot with a card in it.
struct Slot {
    const Modem* modem;
    std::string sim;
};

BusProperties propertiesOf(const BusInterfaces& object, const char* interface)
{
    const auto found = object.find(interface);
    return found == object.end() ? BusProperties() : found->second;
}

/// By the device they are, because the numbers in the paths change when a modem comes and goes.
bool isBefore(const Modem& left, const Modem& right)
{
    const std::string leftDevice = textOf(left.properties, "Device");
    const std::string rightDevice = textOf(right.properties, "Device");
    if (leftDevice != rightDevice)
        return PathsInOrder()(leftDevice, rightDevice);
    return PathsInOrder()(left.path, right.path);
}

std::vector<Modem> modemsIn(const BusObjects& objects)
{
    std::vector<Modem> modems;
    for (const auto& [path, object] : objects) {
        if (object.contains(modemInterface))
            modems.push_back({ path, propertiesOf(object, modemInterface), propertiesOf(object, networkInterface) });
    }
    std::ranges::sort(modems, isBefore);
    return modems;
}

std::vector<Slot> slotsOf(const std::vector<Modem>& modems)
{
    std::vector<Slot> slotsInOrder;
    for (const Modem& modem : modems) {
        std::vector<std::string> sims = pathsOf(modem.properties, "SimSlots");
        if (sims.empty())
            sims.push_back(pathOf(modem.properties, "Sim"));
        for (const std::string& sim : sims) {
            if (!sim.empty() && sim != noObject)
                slotsInOrder.push_back({ &modem, sim });
        }
    }
    return slotsInOrder;
}

bool isAtHome(const Modem& modem)
{
    const auto state = numberOf(modem.network, "RegistrationState");
    return state && std::ranges::find(homeStates, *state) != std::end(homeStates);
}

SimCard cardIn(const Slot& slot, const BusProperties& sim)
{
    SimCard card;
    card.iccid = plainIccid(textOf(sim, "SimIdentifier"));
    card.homeNetwork = textOf(sim, "OperatorIdentifier");
    card.homeName = textOf(sim, "OperatorName");
    // The modem tells of the card that it uses, and of no other in its slots.
    if (pathOf(slot.modem->properties, "Sim") != slot.sim)
        return card;
    const auto numbers = textsOf(slot.modem->properties, "OwnNumbers");
    card.ownNumber = numbers.empty() ? std::string() : numbers.front();
    if (isAtHome(*slot.modem)) {
        card.registeredName = textOf(slot.modem->network, "OperatorName");
        if (card.homeNetwork.empty())
            card.homeNetwork = textOf(slot.modem->network, "OperatorCode");
    }
    return card;
}

} // namespace

ModemManagerState::ModemManagerState(std::shared_ptr<Bus> systemBus, std::shared_ptr<FirstWait> group)
    : ObjectCache(std::move(systemBus), modemManager, managerPath, std::move(group))
{
}

std::vector<SimCard> ModemManagerState::cards()
{
    const BusObjects& all = objects();
    const std::vector<Modem> modems = modemsIn(all);
    std::vector<SimCard> cards;
    for (const Slot& slot : slotsOf(modems)) {
        const auto sim = all.find(slot.sim);
        const SimCard card = cardIn(slot, sim == all.end() ? BusProperties() : propertiesOf(sim->second, simInterface));
        if (!card.iccid.empty())
            cards.push_back(card);
    }
    return cards;
}

void ModemManagerState::objectsChanged()
{
    std::set<std::string> present;
    for (const Slot& slot : slotsOf(modemsIn(known())))
        present.insert(slot.sim);
    // Another card may get the path of one that has gone.
    std::erase_if(known(),
        [&](const auto& object) { return object.second.contains(simInterface) && !present.contains(object.first); });
    for (const std::string& path : present)
        askForSim(path);
}

void ModemManagerState::askForSim(const std::string& path)
{
    const bool isFirst = known()[path].try_emplace(simInterface).second;
    if (!isFirst)
        return;
    askFor(path, propertiesInterface, "GetAll", Variant::ofTuple({ Variant::ofText(simInterface) }),
        [this, path](const BusReply& reply) {
            const auto properties = propertiesIn(reply.value(propertiesType));
            const auto sim = known().find(path);
            if (!properties || sim == known().end())
                return;
            sim->second.insert_or_assign(simInterface, *properties);
            noteChange();
        });
}
