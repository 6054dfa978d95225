#include "Linux/Telephony/LinuxSubscriptions.h"

#include "Linux/BusValues.h"
#include "Linux/Telephony/PhoneNumbers.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <set>
#include <utility>

namespace {

/// The name space of our keys. It must never change: logos and bindings are kept by these keys.
const QUuid simNamespace { 0x6d1f7a52, 0x0c4e, 0x5b37, 0x9a, 0x63, 0x2e, 0x8f, 0x41, 0xd0, 0x7b, 0x19 };
constexpr qint64 largestNamesFile = 1 << 20;
constexpr const char* nameless = "SIM ";

/// A SIM's key, or its ICCID as it is or with the filler that some programs print.
QString keyIn(const QString& text)
{
    const QString iccid = plainIccid(text);
    return iccid.isEmpty() ? text.trimmed().toUpper() : iccid;
}

/// The user's names of SIMs, by key or ICCID.
QHash<QString, QString> namesIn(const QString& path)
{
    QHash<QString, QString> names;
    QFile file(path);
    // Anything else might never come to an end, or not even to a beginning.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return names;
    for (const QString& line : QString::fromUtf8(file.read(largestNamesFile)).split(QLatin1Char('\n'))) {
        const qsizetype sign = line.indexOf(QLatin1Char('='));
        const QString name = plainLine(line.mid(sign + 1));
        if (sign > 0 && !name.isEmpty())
            names.insert(keyIn(line.left(sign)), name);
    }
    return names;
}

std::optional<std::string> present(const QString& text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text.toStdString());
}

QString firstOf(std::initializer_list<QString> texts)
{
    const auto found = std::ranges::find_if(texts, [](const QString& text) { return !text.isEmpty(); });
    return found == texts.end() ? QString() : *found;
}

} // namespace

std::string simKeyOf(const QString& iccid)
{
    return QUuid::createUuidV5(simNamespace, iccid).toString(QUuid::WithoutBraces).toUpper().toStdString();
}

const MobileProviders& LinuxSubscriptions::providers() const
{
    if (!_providers)
        _providers.emplace();
    return *_providers;
}

QString LinuxSubscriptions::carrierOf(const SimCard& card) const
{
    const QString known = firstOf({ plainLine(card.registeredName), plainLine(card.homeName) });
    return known.isEmpty() ? plainLine(providers().nameOf(card.homeNetwork)) : known;
}

void LinuxSubscriptions::askAhead()
{
    if (!_known.isKnown())
        _ahead = begun();
}

/// Both, because most machines have one of them alone and the other costs nothing.
LinuxSubscriptions::Talks LinuxSubscriptions::begun() const
{
    auto ahead = std::exchange(_ahead, std::nullopt);
    if (ahead && ahead->modemManager.isOfThisTurn())
        return std::move(*ahead);
    return { _bus->begin(modemManagerService, modemManagerSims), _bus->begin(ofonoService, ofonoSims) };
}

const std::vector<SimCard>& LinuxSubscriptions::cards() const
{
    return _known.get([this] {
        Talks talks = begun();
        if (_askOthers)
            _askOthers();
        std::vector<SimCard> ofModemManager = talks.modemManager.result();
        return ofModemManager.empty() ? talks.ofono.result() : ofModemManager;
    });
}

std::vector<Subscription> LinuxSubscriptions::subscriptions() const
{
    const std::vector<SimCard>& found = cards();
    const QHash<QString, QString> names = found.empty() ? QHash<QString, QString>() : namesIn(_namesFile);
    _regions.clear();

    std::vector<Subscription> sims;
    std::set<std::string> keys;
    for (const SimCard& card : found) {
        // Rows and files are named by the key: a card that two modems tell of is one.
        const std::string key = simKeyOf(card.iccid);
        if (!keys.insert(key).second)
            continue;
        const QString carrier = carrierOf(card);
        const QString place = QString::number(sims.size() + 1);
        const QString label = firstOf({ names.value(QString::fromStdString(key)), names.value(card.iccid), carrier,
            QLatin1String(nameless) + place });
        const QString number = plainLine(card.ownNumber);
        if (!number.isEmpty())
            _regions.insert(number, providers().regionOf(card.homeNetwork));
        sims.push_back({ key, label.toStdString(), present(number), present(carrier), card.isDefaultVoice });
    }
    const bool isChosen = std::ranges::any_of(sims, &Subscription::userDefaultVoice);
    if (!isChosen && !sims.empty())
        sims.front().userDefaultVoice = true;
    return sims;
}

std::string LinuxSubscriptions::formattedNumber(const std::string& number) const
{
    return formattedPhoneNumber(number, _regions.value(QString::fromStdString(number)).toStdString());
}
