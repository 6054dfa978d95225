#pragma once

#include <QDBusMessage>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

/// What daemons answer, taken as what it should be and as nothing when it is something else: a daemon may answer
/// anything.

/// The objects of an object manager: properties by interface by path.
using BusInterfaces = QMap<QString, QVariantMap>;
using BusObjects = QMap<QString, BusInterfaces>;

/// Without the paths' order by text: a shorter path is first, so that "Modem/10" follows "Modem/9".
struct PathsInOrder {
    bool operator()(const QString& left, const QString& right) const
    {
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    }
};

/// Nothing when the reply is an error or of another form.
std::optional<BusObjects> managedObjectsOf(const QDBusMessage& reply);
/// The a{sa{sv}} of a reply: properties by group. Nothing when it is an error or of another form.
std::optional<BusInterfaces> propertiesByGroupOf(const QDBusMessage& reply);
/// The a{sv} of a reply; empty when it is an error or of another form.
QVariantMap propertiesOf(const QDBusMessage& reply);

/// Empty, or false, when the property is missing or of another type.
QString textOf(const QVariantMap& properties, const char* name);
QStringList textsOf(const QVariantMap& properties, const char* name);
QString pathOf(const QVariantMap& properties, const char* name);
QStringList pathsOf(const QVariantMap& properties, const char* name);
bool isTrue(const QVariantMap& properties, const char* name);
bool isFalse(const QVariantMap& properties, const char* name);
/// Absent when the property is missing or no number.
std::optional<qlonglong> numberOf(const QVariantMap& properties, const char* name);

/// The text as one line without control characters, which are spaces, and without more than one space at a time: what
/// others have called themselves is shown on terminals too.
QString plainLine(QString text);

/// What a variant within variants holds.
QVariant unwrapped(QVariant value);
