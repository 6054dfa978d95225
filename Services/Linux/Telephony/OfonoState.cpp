#include "Linux/Telephony/OfonoState.h"

#include "Linux/Telephony/Texts.h"

#include <algorithm>
#include <utility>

namespace {

constexpr const char* ofono = "org.ofono";
constexpr const char* rootPath = "/";
constexpr const char* managerInterface = "org.ofono.Manager";
constexpr const char* modemInterface = "org.ofono.Modem";
constexpr const char* simInterface = "org.ofono.SimManager";
constexpr const char* networkInterface = "org.ofono.NetworkRegistration";
constexpr const char* modemsType = "a(oa{sv})";
constexpr const char* modemType = "(oa{sv})";
constexpr const char* pathType = "(o)";
constexpr const char* propertyType = "(sv)";
constexpr const char* propertiesType = "a{sv}";
constexpr const char* interfacesProperty = "Interfaces";
constexpr const char* registeredAtHome = "registered";
/// An extension of oFono on phones with several SIMs: the subscriber identity of the default line for calls.
constexpr const char* voiceInterface = "org.nemomobile.ofono.ModemManager";
constexpr const char* voiceProperty = "DefaultVoiceSim";

const BusProperties& propertiesOf(const BusInterfaces& object, const char* interface)
{
    static const BusProperties none;
    const auto found = object.find(interface);
    return found == object.end() ? none : found->second;
}

SimCard cardOf(const BusProperties& sim, const BusProperties& network, const std::string& voiceSim)
{
    SimCard card;
    if (!isTrue(sim, "Present"))
        return card;
    card.iccid = plainIccid(textOf(sim, "CardIdentifier"));
    const auto numbers = textsOf(sim, "SubscriberNumbers");
    card.ownNumber = numbers.empty() ? std::string() : numbers.front();
    card.homeNetwork = textOf(sim, "MobileCountryCode") + textOf(sim, "MobileNetworkCode");
    card.homeName = textOf(sim, "ServiceProviderName");
    if (textOf(network, "Status") == registeredAtHome)
        card.registeredName = textOf(network, "Name");
    card.isDefaultVoice = !voiceSim.empty() && voiceSim == textOf(sim, "SubscriberIdentity");
    return card;
}

} // namespace

OfonoState::OfonoState(std::shared_ptr<Bus> systemBus, std::shared_ptr<FirstWait> group)
    : DaemonState(std::move(systemBus), ofono, std::move(group))
{
}

std::vector<SimCard> OfonoState::cards()
{
    const BusObjects& all = objects();
    const auto root = all.find(rootPath);
    const std::string voiceSim =
        root == all.end() ? std::string() : textOf(propertiesOf(root->second, voiceInterface), voiceProperty);
    std::vector<std::string> paths;
    for (const auto& [path, object] : all) {
        if (object.contains(simInterface))
            paths.push_back(path);
    }
    std::ranges::sort(paths, PathsInOrder());
    std::vector<SimCard> cards;
    for (const std::string& path : paths) {
        const BusInterfaces& modem = all.at(path);
        const SimCard card = cardOf(propertiesOf(modem, simInterface), propertiesOf(modem, networkInterface), voiceSim);
        if (!card.iccid.empty())
            cards.push_back(card);
    }
    return cards;
}

void OfonoState::listen()
{
    hear(rootPath, managerInterface, "ModemAdded", [this](const BusSignal& heard) {
        if (heard.values.is(modemType))
            setModem(*heard.values[0].path(), *propertiesIn(heard.values[1]));
    });
    hear(rootPath, managerInterface, "ModemRemoved", [this](const BusSignal& heard) {
        if (heard.values.is(pathType))
            removeModem(*heard.values[0].path());
    });
    for (const char* interface : { modemInterface, simInterface, networkInterface })
        hear({}, interface, "PropertyChanged", [this](const BusSignal& heard) { changeProperty(heard); });
    hear(rootPath, voiceInterface, "DefaultVoiceSimChanged",
        [this](const BusSignal& heard) { takeVoiceSim(heard.values[0]); });
}

void OfonoState::request()
{
    askFor(rootPath, managerInterface, "GetModems", {},
        [this](const BusReply& reply) { takeModems(reply.value(modemsType)); });
    askFor(rootPath, voiceInterface, "GetDefaultVoiceSim", {},
        [this](const BusReply& reply) { takeVoiceSim(reply.value("s")); });
}

void OfonoState::takeModems(const Variant& modems)
{
    for (std::size_t i = 0; i < modems.size(); ++i)
        setModem(*modems[i][0].path(), *propertiesIn(modems[i][1]));
}

void OfonoState::setModem(const std::string& path, BusProperties properties)
{
    known()[path].insert_or_assign(modemInterface, std::move(properties));
    followInterfaces(path);
    noteChange();
}

void OfonoState::removeModem(const std::string& path)
{
    known().erase(path);
    noteChange();
}

void OfonoState::takeVoiceSim(const Variant& subscriber)
{
    if (!subscriber.is("s"))
        return;
    known()[rootPath][voiceInterface].insert_or_assign(voiceProperty, subscriber);
    noteChange();
}

void OfonoState::changeProperty(const BusSignal& heard)
{
    const auto modem = heard.values.is(propertyType) ? known().find(heard.path) : known().end();
    if (modem == known().end())
        return;
    const auto properties = modem->second.find(heard.interface);
    if (properties == modem->second.end())
        return;
    const std::string name = *heard.values[0].text();
    properties->second.insert_or_assign(name, heard.values[1]);
    if (name == interfacesProperty)
        followInterfaces(heard.path);
    noteChange();
}

void OfonoState::followInterfaces(const std::string& modem)
{
    BusInterfaces& object = known()[modem];
    const auto offered = textsOf(propertiesOf(object, modemInterface), interfacesProperty);
    for (const char* interface : { simInterface, networkInterface }) {
        if (std::ranges::find(offered, interface) == offered.end())
            object.erase(interface);
        else if (object.try_emplace(interface).second)
            askForProperties(modem, interface);
    }
}

void OfonoState::askForProperties(const std::string& modem, const char* interface)
{
    askFor(modem, interface, "GetProperties", {}, [this, modem, interface](const BusReply& reply) {
        const auto properties = propertiesIn(reply.value(propertiesType));
        const auto object = known().find(modem);
        if (!properties || object == known().end() || !object->second.contains(interface))
            return;
        object->second.insert_or_assign(interface, *properties);
        noteChange();
    });
}
