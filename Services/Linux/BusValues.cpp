#include "Linux/BusValues.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>

namespace {

constexpr const char* managedObjectsSignature = "a{oa{sa{sv}}}";
constexpr const char* groupsSignature = "a{sa{sv}}";
constexpr const char* propertiesSignature = "a{sv}";
constexpr const char* pathsSignature = "ao";

bool isAnswer(const QDBusMessage& reply, const char* signature)
{
    return reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String(signature)
        && !reply.arguments().isEmpty();
}

bool breaksLine(QChar character)
{
    const QChar::Category category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line
        || category == QChar::Separator_Paragraph;
}

QVariant property(const QVariantMap& properties, const char* name)
{
    return unwrapped(properties.value(QLatin1String(name)));
}

} // namespace

QString plainLine(QString text)
{
    std::replace_if(text.begin(), text.end(), breaksLine, QLatin1Char(' '));
    return text.simplified();
}

QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<BusObjects> managedObjectsOf(const QDBusMessage& reply)
{
    if (!isAnswer(reply, managedObjectsSignature))
        return std::nullopt;
    QMap<QDBusObjectPath, BusInterfaces> byPath;
    reply.arguments().constFirst().value<QDBusArgument>() >> byPath;
    BusObjects objects;
    for (auto object = byPath.cbegin(); object != byPath.cend(); ++object)
        objects.insert(object.key().path(), object.value());
    return objects;
}

std::optional<BusInterfaces> propertiesByGroupOf(const QDBusMessage& reply)
{
    if (!isAnswer(reply, groupsSignature))
        return std::nullopt;
    return qdbus_cast<BusInterfaces>(reply.arguments().constFirst());
}

QVariantMap propertiesOf(const QDBusMessage& reply)
{
    if (!isAnswer(reply, propertiesSignature))
        return {};
    return qdbus_cast<QVariantMap>(reply.arguments().constFirst());
}

QString textOf(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : QString();
}

QStringList textsOf(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    return value.metaType() == QMetaType::fromType<QStringList>() ? value.toStringList() : QStringList();
}

QString pathOf(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    return value.metaType() == QMetaType::fromType<QDBusObjectPath>() ? value.value<QDBusObjectPath>().path()
                                                                      : QString();
}

QStringList pathsOf(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    QList<QDBusObjectPath> paths;
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const auto argument = value.value<QDBusArgument>();
        if (argument.currentSignature() == QLatin1String(pathsSignature))
            argument >> paths;
    } else if (value.metaType() == QMetaType::fromType<QList<QDBusObjectPath>>()) {
        paths = value.value<QList<QDBusObjectPath>>();
    }
    QStringList texts;
    for (const QDBusObjectPath& path : paths)
        texts.append(path.path());
    return texts;
}

bool isTrue(const QVariantMap& properties, const char* name)
{
    const QVariant value = property(properties, name);
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool();
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
