#pragma once

#include <QDBusMessage>
#include <QMap>
#include <QString>
#include <QVariantMap>

#include <optional>

/// What daemons answer, taken as what it should be and as nothing when it is something else: a daemon may answer
/// anything.

using GroupsOfProperties = QMap<QString, QVariantMap>;

/// The a{sa{sv}} of a reply: properties by group. Nothing when it is an error or of another form.
std::optional<GroupsOfProperties> propertiesByGroupOf(const QDBusMessage& reply);

/// Empty, or false, when the property is missing or of another type.
QString textOf(const QVariantMap& properties, const char* name);
bool isFalse(const QVariantMap& properties, const char* name);
/// Absent when the property is missing or no number.
std::optional<qlonglong> numberOf(const QVariantMap& properties, const char* name);

/// What a variant within variants holds.
QVariant unwrapped(QVariant value);
