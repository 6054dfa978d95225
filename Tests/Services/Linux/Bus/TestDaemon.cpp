#include "Bus/TestDaemon.h"

#include <gio/gio.h>
#include <stdexcept>
#include <utility>

namespace {

constexpr const char* description = "<node><interface name='org.freedesktop.DBus.ObjectManager'>"
                                    "<method name='GetManagedObjects'>"
                                    "<arg type='a{oa{sa{sv}}}' direction='out'/></method></interface></node>";
constexpr auto connectionFlags = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
constexpr gint standardTimeout = -1;

GDBusInterfaceInfo* objectManager()
{
    static GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(description, nullptr);
    return node->interfaces[0];
}

} // namespace

Variant parsed(const std::string& text)
{
    GVariant* value = g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, nullptr);
    if (!value)
        throw std::invalid_argument(text);
    return Variant(value);
}

TestDaemon::TestDaemon(const BusContext& context, const std::string& address, const char* ownName)
{
    const BusContext::Scope scope(context);
    _connection.reset(
        g_dbus_connection_new_for_address_sync(address.c_str(), connectionFlags, nullptr, nullptr, nullptr),
        g_object_unref);
    const auto called = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*, GVariant*,
                            GDBusMethodInvocation* invocation,
                            gpointer self) { static_cast<TestDaemon*>(self)->answer(invocation); };
    static const GDBusInterfaceVTable table { called, nullptr, nullptr, {} };
    g_dbus_connection_register_object(_connection.get(), "/", objectManager(), &table, this, nullptr, nullptr);
    g_variant_unref(g_dbus_connection_call_sync(_connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
        "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", ownName, 0), nullptr, G_DBUS_CALL_FLAGS_NONE,
        standardTimeout, nullptr, nullptr));
}

TestDaemon::~TestDaemon()
{
    for (GDBusMethodInvocation* invocation : _waiting)
        g_object_unref(invocation);
    g_dbus_connection_close_sync(_connection.get(), nullptr, nullptr);
}

void TestDaemon::setBusy(bool busy)
{
    _isBusy = busy;
    for (GDBusMethodInvocation* invocation : busy ? std::vector<GDBusMethodInvocation*>() : std::exchange(_waiting, {}))
        reply(invocation);
}

void TestDaemon::answer(GDBusMethodInvocation* invocation)
{
    ++_questions;
    if (_isBusy)
        _waiting.push_back(invocation);
    else
        reply(invocation);
}

void TestDaemon::reply(GDBusMethodInvocation* invocation) const
{
    g_dbus_method_invocation_return_value(invocation, Variant::ofTuple({ parsed(_objects) }).get());
}

void TestDaemon::sendSignal(
    const std::string& path, const std::string& interface, const std::string& member, const std::string& values) const
{
    g_dbus_connection_emit_signal(
        _connection.get(), nullptr, path.c_str(), interface.c_str(), member.c_str(), parsed(values).get(), nullptr);
}
