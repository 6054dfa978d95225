#pragma once

#include <string>

/// A plain run of digits, with or without a leading "+", in groups as people write them: "+1 202 555 0143". Anything
/// else, a number that holds spaces already among it, comes back as it is.
std::string groupedPhoneNumber(const std::string& number);
