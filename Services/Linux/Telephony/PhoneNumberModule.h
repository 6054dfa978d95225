#pragma once

#include <string>

/// What the module of phone numbers offers. It is a module of its own because the library behind it, and what that
/// library needs, take longer to load than the first page takes to open, which shows no numbers.
///
/// Leaves `formatted` as it is when the text is no number of that region ("DE", or none).
extern "C" void tandemFormatPhoneNumber(const std::string& number, const std::string& region, std::string& formatted);
