#pragma once

#include <string>

/// Where the machine's bus is.
std::string systemBusAddress();
/// Where the user's own bus is; empty when nobody says. A bus library would start a bus of its own then.
std::string sessionBusAddress();

/// Those of the addresses, which stand between semicolons, that are of sockets. Others are left out: some of them start
/// programs.
std::string socketAddressesOf(const std::string& addresses);
