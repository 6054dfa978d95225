#include "Linux/Telephony/MobileProviders.h"

#include <QFile>
#include <QXmlStreamReader>

#include <map>

namespace {

constexpr qsizetype countryCodeLength = 3;

/// Goes through the file once, from country to provider to network.
class Reader {
public:
    explicit Reader(QFile& file)
        : _xml(&file)
    {
    }

    QHash<QString, QString> names;
    /// How many networks of a country code a region has. Some codes are shared with small territories.
    std::map<QString, std::map<QString, int>> networks;

    void read()
    {
        while (!_xml.atEnd() && !_xml.hasError()) {
            _xml.readNext();
            if (_xml.isStartElement() && _xml.name() == QLatin1String("country"))
                _region = _xml.attributes().value(QLatin1String("code")).toString().toUpper();
            else if (_xml.isStartElement() && _xml.name() == QLatin1String("provider"))
                readProvider();
        }
    }

private:
    void readProvider()
    {
        _name.clear();
        while (_xml.readNextStartElement()) {
            if (_xml.name() == QLatin1String("name") && _name.isEmpty())
                _name = _xml.readElementText().trimmed();
            else if (_xml.name() == QLatin1String("gsm"))
                readNetworks();
            else
                _xml.skipCurrentElement();
        }
    }

    void readNetworks()
    {
        while (_xml.readNextStartElement()) {
            if (_xml.name() == QLatin1String("network-id"))
                addNetwork(_xml.attributes());
            _xml.skipCurrentElement();
        }
    }

    void addNetwork(const QXmlStreamAttributes& attributes)
    {
        const QString country = attributes.value(QLatin1String("mcc")).toString();
        const QString network = country + attributes.value(QLatin1String("mnc")).toString();
        // A network that several carriers use is listed first with the one that owns it.
        if (!names.contains(network))
            names.insert(network, _name);
        ++networks[country][_region];
    }

    QXmlStreamReader _xml;
    QString _region;
    QString _name;
};

QString largest(const std::map<QString, int>& counts)
{
    const auto most = std::max_element(
        counts.begin(), counts.end(), [](const auto& left, const auto& right) { return left.second < right.second; });
    return most->first;
}

} // namespace

MobileProviders::MobileProviders(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    Reader reader(file);
    reader.read();
    _names = reader.names;
    for (const auto& [country, regions] : reader.networks)
        _regions.insert(country, largest(regions));
}

QString MobileProviders::regionOf(const QString& network) const
{
    return _regions.value(network.left(countryCodeLength));
}
