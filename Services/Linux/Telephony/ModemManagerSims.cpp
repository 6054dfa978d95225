#include "Linux/BusValues.h"
#include "Linux/Telephony/SimCard.h"

#include <algorithm>
#include <map>

namespace {

constexpr const char* rootPath = "/org/freedesktop/ModemManager1";
constexpr const char* objectManager = "org.freedesktop.DBus.ObjectManager";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* modemInterface = "org.freedesktop.ModemManager1.Modem";
constexpr const char* networkInterface = "org.freedesktop.ModemManager1.Modem.Modem3gpp";
constexpr const char* simInterface = "org.freedesktop.ModemManager1.Sim";
constexpr const char* noObject = "/";
/// Registration states of a modem in its home network: for everything, for SMS alone, for fallback calls alone.
constexpr qlonglong homeStates[] = { 1, 6, 9 };

struct Modem {
    QString path;
    QVariantMap properties;
    QVariantMap network;
};

/// A slot with a card in it.
struct Slot {
    const Modem* modem;
    QString sim;
};

/// By the device they are, because the numbers in the paths change when a modem comes and goes.
bool isBefore(const Modem& left, const Modem& right)
{
    const QString leftDevice = textOf(left.properties, "Device");
    const QString rightDevice = textOf(right.properties, "Device");
    if (leftDevice != rightDevice)
        return PathsInOrder()(leftDevice, rightDevice);
    return PathsInOrder()(left.path, right.path);
}

std::vector<Modem> modemsOf(const BusObjects& objects)
{
    std::vector<Modem> modems;
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        const auto modem = object->constFind(QLatin1String(modemInterface));
        if (modem != object->cend())
            modems.push_back({ object.key(), *modem, object->value(QLatin1String(networkInterface)) });
    }
    std::sort(modems.begin(), modems.end(), isBefore);
    return modems;
}

std::vector<Slot> slotsOf(const std::vector<Modem>& modems)
{
    std::vector<Slot> slotsInOrder;
    for (const Modem& modem : modems) {
        QStringList sims = pathsOf(modem.properties, "SimSlots");
        if (sims.isEmpty())
            sims.append(pathOf(modem.properties, "Sim"));
        for (const QString& sim : sims) {
            if (!sim.isEmpty() && sim != QLatin1String(noObject))
                slotsInOrder.push_back({ &modem, sim });
        }
    }
    return slotsInOrder;
}

QDBusMessage requestOf(const Slot& slot)
{
    QDBusMessage request = QDBusMessage::createMethodCall(
        QLatin1String(modemManagerService), slot.sim, QLatin1String(properties), QStringLiteral("GetAll"));
    request << QString(QLatin1String(simInterface));
    return request;
}

bool isAtHome(const Modem& modem)
{
    const auto state = numberOf(modem.network, "RegistrationState");
    return state && std::ranges::find(homeStates, *state) != std::end(homeStates);
}

SimCard cardIn(const Slot& slot, const QVariantMap& sim)
{
    SimCard card;
    card.iccid = plainIccid(textOf(sim, "SimIdentifier"));
    card.homeNetwork = textOf(sim, "OperatorIdentifier");
    card.homeName = textOf(sim, "OperatorName");
    // The modem tells of the card that it uses, and of no other in its slots.
    if (pathOf(slot.modem->properties, "Sim") != slot.sim)
        return card;
    card.ownNumber = textsOf(slot.modem->properties, "OwnNumbers").value(0);
    if (isAtHome(*slot.modem)) {
        card.registeredName = textOf(slot.modem->network, "OperatorName");
        if (card.homeNetwork.isEmpty())
            card.homeNetwork = textOf(slot.modem->network, "OperatorCode");
    }
    return card;
}

QDBusMessage modemsRequest()
{
    return QDBusMessage::createMethodCall(QLatin1String(modemManagerService), QLatin1String(rootPath),
        QLatin1String(objectManager), QStringLiteral("GetManagedObjects"));
}

} // namespace

const char* const modemManagerService = "org.freedesktop.ModemManager1";

std::vector<SimCard> modemManagerSims(const BusCaller& systemBus)
{
    const auto objects = managedObjectsOf(systemBus.call(modemsRequest()));
    if (!objects)
        return {};
    const std::vector<Modem> modems = modemsOf(*objects);
    const std::vector<Slot> slotsInOrder = slotsOf(modems);
    std::vector<QDBusMessage> requests;
    std::ranges::transform(slotsInOrder, std::back_inserter(requests), requestOf);
    const std::vector<QDBusMessage> replies = systemBus.callAll(requests);

    std::vector<SimCard> cards;
    for (std::size_t i = 0; i < slotsInOrder.size(); ++i) {
        SimCard card = cardIn(slotsInOrder[i], propertiesOf(replies[i]));
        if (!card.iccid.isEmpty())
            cards.push_back(std::move(card));
    }
    return cards;
}
