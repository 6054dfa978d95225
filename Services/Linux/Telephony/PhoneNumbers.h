#pragma once

#include <string>

/// The number as people of that region ("DE", or none) write it: one with a leading "+" in the international form,
/// any other in the region's own. What is no number there by all that is known comes
/// back as it is.
std::string formattedPhoneNumber(const std::string& number, const std::string& region);
