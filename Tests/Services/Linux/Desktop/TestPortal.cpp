#include "Desktop/TestPortal.h"

#include "Bus/TestDaemon.h"
#include "Linux/Desktop/Portal.h"

#include <gio/gio.h>
#include <utility>

namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* description = "<node><interface name='org.freedesktop.portal.Settings'><method name='ReadAll'>"
                                    "<arg type='as' direction='in'/><arg type='a{sa{sv}}' direction='out'/>"
                                    "</method></interface></node>";
constexpr auto connectionFlags = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
constexpr gint standardTimeout = -1;

GDBusInterfaceInfo* settingsDescription()
{
    static GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(description, nullptr);
    return node->interfaces[0];
}

} // namespace

TestPortal::TestPortal(const BusContext& context, const std::string& address, const std::string& settings)
    : _settings(Variant::ofTuple({ parsed(settings) }))
{
    const BusContext::Scope scope(context);
    _connection.reset(
        g_dbus_connection_new_for_address_sync(address.c_str(), connectionFlags, nullptr, nullptr, nullptr),
        g_object_unref);
    const auto called = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*, GVariant*,
                            GDBusMethodInvocation* invocation,
                            gpointer self) { static_cast<TestPortal*>(self)->answer(invocation); };
    static const GDBusInterfaceVTable table { called, nullptr, nullptr, {} };
    g_dbus_connection_register_object(
        _connection.get(), portalPath, settingsDescription(), &table, this, nullptr, nullptr);
    g_variant_unref(g_dbus_connection_call_sync(_connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
        "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", portalName, 0), nullptr, G_DBUS_CALL_FLAGS_NONE,
        standardTimeout, nullptr, nullptr));
}

TestPortal::~TestPortal()
{
    for (GDBusMethodInvocation* invocation : _waiting)
        g_object_unref(invocation);
    g_dbus_connection_close_sync(_connection.get(), nullptr, nullptr);
}

void TestPortal::change(const std::string& group, const std::string& key, const std::string& value)
{
    const Variant change = Variant::ofTuple(
        { Variant::ofText(group), Variant::ofText(key), Variant(g_variant_new_variant(parsed(value).get())) });
    g_dbus_connection_emit_signal(
        _connection.get(), nullptr, portalPath, settingsInterface, "SettingChanged", change.get(), nullptr);
}

void TestPortal::setBusy(bool busy)
{
    _isBusy = busy;
    if (busy)
        return;
    for (GDBusMethodInvocation* invocation : std::exchange(_waiting, {}))
        g_dbus_method_invocation_return_value(invocation, _settings.get());
}

void TestPortal::answer(GDBusMethodInvocation* invocation)
{
    ++_questions;
    if (_isBusy)
        _waiting.push_back(invocation);
    else
        g_dbus_method_invocation_return_value(invocation, _settings.get());
}
