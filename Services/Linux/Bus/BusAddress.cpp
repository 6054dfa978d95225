#include "Linux/Bus/BusAddress.h"

#include <cstdlib>
#include <sstream>

namespace {

constexpr const char* systemAddressVariable = "DBUS_SYSTEM_BUS_ADDRESS";
constexpr const char* sessionAddressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* runtimeDirectoryVariable = "XDG_RUNTIME_DIR";
constexpr const char* socketTransports[] = { "unix:", "tcp:" };
constexpr const char* socketPath = "unix:path=";
constexpr const char* sessionSocket = "/bus";
constexpr const char* systemSocket = "/run/dbus/system_bus_socket";
constexpr char addressSeparator = ';';

std::string variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool isOfSocket(const std::string& address)
{
    for (const char* transport : socketTransports) {
        if (address.starts_with(transport))
            return true;
    }
    return false;
}

} // namespace

std::string systemBusAddress()
{
    const std::string address = variable(systemAddressVariable);
    return address.empty() ? std::string(socketPath) + systemSocket : address;
}

std::string sessionBusAddress()
{
    const std::string address = variable(sessionAddressVariable);
    const std::string directory = variable(runtimeDirectoryVariable);
    if (!address.empty() || directory.empty())
        return address;
    return socketPath + directory + sessionSocket;
}

std::string socketAddressesOf(const std::string& addresses)
{
    std::string found;
    std::istringstream stream(addresses);
    for (std::string address; std::getline(stream, address, addressSeparator);) {
        if (isOfSocket(address))
            found += (found.empty() ? "" : std::string(1, addressSeparator)) + address;
    }
    return found;
}
