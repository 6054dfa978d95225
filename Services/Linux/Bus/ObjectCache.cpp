#include "Linux/Bus/ObjectCache.h"

namespace {

constexpr const char* managerInterface = "org.freedesktop.DBus.ObjectManager";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* objectsType = "a{oa{sa{sv}}}";
constexpr const char* addedType = "(oa{sa{sv}})";
constexpr const char* removedType = "(oas)";
constexpr const char* changedType = "(sa{sv}as)";

} // namespace

ObjectCache::ObjectCache(
    std::shared_ptr<Bus> bus, std::string daemon, std::string managerPath, std::shared_ptr<FirstWait> group)
    : DaemonState(std::move(bus), std::move(daemon), std::move(group))
    , _managerPath(std::move(managerPath))
{
}

void ObjectCache::listen()
{
    hear(_managerPath, managerInterface, "InterfacesAdded", [this](const BusSignal& heard) { addInterfaces(heard); });
    hear(_managerPath, managerInterface, "InterfacesRemoved",
        [this](const BusSignal& heard) { removeInterfaces(heard); });
    // Of all objects, those too that the manager does not tell of.
    hear({}, propertiesInterface, "PropertiesChanged", [this](const BusSignal& heard) { changeProperties(heard); });
}

void ObjectCache::request()
{
    askFor(_managerPath, managerInterface, "GetManagedObjects", {}, [this](const BusReply& reply) { take(reply); });
}

void ObjectCache::take(const BusReply& reply)
{
    auto objects = objectsIn(reply.value(objectsType));
    if (!objects)
        return;
    known() = std::move(*objects);
    noteObjects();
}

void ObjectCache::addInterfaces(const BusSignal& heard)
{
    if (!heard.values.is(addedType))
        return;
    const auto added = interfacesIn(heard.values[1]);
    BusInterfaces& object = known()[*heard.values[0].path()];
    for (const auto& [interface, properties] : *added)
        object.insert_or_assign(interface, properties);
    noteObjects();
}

void ObjectCache::removeInterfaces(const BusSignal& heard)
{
    const auto object = heard.values.is(removedType) ? known().find(*heard.values[0].path()) : known().end();
    if (object == known().end())
        return;
    for (const std::string& interface : textsIn(heard.values[1]))
        object->second.erase(interface);
    if (object->second.empty())
        known().erase(object);
    noteObjects();
}

void ObjectCache::changeProperties(const BusSignal& heard)
{
    const auto object = heard.values.is(changedType) ? known().find(heard.path) : known().end();
    if (object == known().end())
        return;
    const auto properties = object->second.find(*heard.values[0].text());
    if (properties == object->second.end())
        return;
    const auto changed = propertiesIn(heard.values[1]);
    for (const auto& [name, value] : *changed)
        properties->second.insert_or_assign(name, value);
    for (const std::string& name : textsIn(heard.values[2]))
        properties->second.erase(name);
    noteObjects();
}

void ObjectCache::noteObjects()
{
    objectsChanged();
    noteChange();
}
