#pragma once

#include <string>
#include <string_view>

/// The log without what tells of people: phone numbers and other long numbers become "[number 1]", mail and Bluetooth
/// addresses "[address 1]", SIM keys "[SIM 1]", however they are written: with digits and spaces of other scripts, or
/// without the hyphens and colons, so a bare hexadecimal number of 12 or 32 digits is masked too. What is the same in
/// the log has the same number, so that a problem can still be followed. Times stay.
std::string maskedLog(std::string_view log);
