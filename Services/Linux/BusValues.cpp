#include "Linux/BusValues.h"

#include <QDBusArgument>
#include <QDBusVariant>

namespace {

constexpr const char* groupsSignature = "a{sa{sv}}";

bool isAnswer(const QDBusMessage& reply, const char* signature)
{
    return reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String(signature)
        && !reply.arguments().isEmpty();
}

QVariant property(const QVariantMap& properties, const char* name)
{
    return unwrapped(properties.value(QLatin1String(name)));
}

} // namespace

QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<GroupsOfProperties> propertiesByGroupOf(const QDBusMessage& reply)
{
    if (!isAnswer(reply, groupsSignature))
        return std::nullopt;
    return qdbus_cast<GroupsOfProperties>(reply.arguments().constFirst());
}

QString textOf(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : QString();
}

bool isFalse(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    return value.metaType() == QMetaType::fromType<bool>() && !value.toBool();
}

std::optional<qlonglong> numberOf(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    switch (value.typeId()) {
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toLongLong();
    default:
        return std::nullopt;
    }
}
