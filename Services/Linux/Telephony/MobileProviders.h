#pragma once

#include <QHash>
#include <QString>

/// The carriers of the world by the codes of their networks, as mobile-broadband-provider-info lists them.
class MobileProviders {
public:
    static constexpr const char* installedFile = "/usr/share/mobile-broadband-provider-info/serviceproviders.xml";

    /// Reads the file; a missing one, or one that is no such list, makes a list without carriers.
    explicit MobileProviders(const QString& file = QLatin1String(installedFile));

    /// The carrier with that MCC and MNC, as "26201"; empty when it is unknown.
    QString nameOf(const QString& network) const { return _names.value(network); }
    /// The region, as "DE", to which the network belongs; empty when it is unknown.
    QString regionOf(const QString& network) const;

private:
    QHash<QString, QString> _names;
    /// By the first three digits of the network.
    QHash<QString, QString> _regions;
};
