#pragma once

#include <string>
#include <string_view>

/// The log without what tells of people: phone numbers and other long numbers become "[number 1]", mail and Bluetooth
/// addresses "[address 1]", SIM keys "[SIM 1]". What is the same in the log has the same number, so that a problem can
/// still be followed. Times stay.
std::string maskedLog(std::string_view log);
