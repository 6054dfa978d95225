#include "Linux/BusValues.h"
#include "Linux/Telephony/SimCard.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

#include <algorithm>

namespace {

constexpr const char* rootPath = "/";
constexpr const char* managerInterface = "org.ofono.Manager";
constexpr const char* simInterface = "org.ofono.SimManager";
constexpr const char* networkInterface = "org.ofono.NetworkRegistration";
constexpr const char* modemsSignature = "a(oa{sv})";
constexpr const char* registeredAtHome = "registered";
/// An extension of oFono on phones with several SIMs: the subscriber identity of the default line for calls.
constexpr const char* voiceInterface = "org.nemomobile.ofono.ModemManager";
constexpr const char* getVoiceSim = "GetDefaultVoiceSim";

struct Modem {
    QString path;
    QVariantMap properties;
};

QDBusMessage question(const QString& path, const char* interface, const char* method)
{
    return QDBusMessage::createMethodCall(
        QLatin1String(ofonoService), path, QLatin1String(interface), QLatin1String(method));
}

std::vector<Modem> modemsOf(const QDBusMessage& reply)
{
    std::vector<Modem> modems;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String(modemsSignature))
        return modems;
    const auto argument = reply.arguments().constFirst().value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusObjectPath path;
        Modem modem;
        argument.beginStructure();
        argument >> path >> modem.properties;
        argument.endStructure();
        modem.path = path.path();
        modems.push_back(std::move(modem));
    }
    argument.endArray();
    std::ranges::sort(modems, PathsInOrder(), &Modem::path);
    return modems;
}

bool hasSim(const Modem& modem)
{
    return textsOf(modem.properties, "Interfaces").contains(QLatin1String(simInterface));
}

SimCard cardOf(const QVariantMap& sim, const QVariantMap& network, const QString& voiceSim)
{
    SimCard card;
    if (!isTrue(sim, "Present"))
        return card;
    card.iccid = plainIccid(textOf(sim, "CardIdentifier"));
    card.ownNumber = textsOf(sim, "SubscriberNumbers").value(0);
    card.homeNetwork = textOf(sim, "MobileCountryCode") + textOf(sim, "MobileNetworkCode");
    card.homeName = textOf(sim, "ServiceProviderName");
    if (textOf(network, "Status") == QLatin1String(registeredAtHome))
        card.registeredName = textOf(network, "Name");
    card.isDefaultVoice = !voiceSim.isEmpty() && voiceSim == textOf(sim, "SubscriberIdentity");
    return card;
}

/// Empty where the system has no such setting.
QString voiceSimOf(const QDBusMessage& reply)
{
    const bool answered = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("s");
    return answered ? reply.arguments().constFirst().toString() : QString();
}

} // namespace

const char* const ofonoService = "org.ofono";

std::vector<SimCard> ofonoSims(const BusCaller& systemBus)
{
    std::vector<Modem> modems =
        modemsOf(systemBus.call(question(QLatin1String(rootPath), managerInterface, "GetModems")));
    std::erase_if(modems, [](const Modem& modem) { return !hasSim(modem); });
    if (modems.empty())
        return {};
    std::vector<QDBusMessage> requests { question(QLatin1String(rootPath), voiceInterface, getVoiceSim) };
    for (const Modem& modem : modems) {
        requests.push_back(question(modem.path, simInterface, "GetProperties"));
        requests.push_back(question(modem.path, networkInterface, "GetProperties"));
    }
    const std::vector<QDBusMessage> replies = systemBus.callAll(requests);

    std::vector<SimCard> cards;
    for (std::size_t i = 0; i < modems.size(); ++i) {
        SimCard card =
            cardOf(propertiesOf(replies[2 * i + 1]), propertiesOf(replies[2 * i + 2]), voiceSimOf(replies[0]));
        if (!card.iccid.isEmpty())
            cards.push_back(std::move(card));
    }
    return cards;
}
