#include "Demo/PhoneNumberGroups.h"

#include <string_view>

namespace {

constexpr std::string_view decimalDigits = "0123456789";
constexpr std::string_view oneDigitCodes = "17";
constexpr std::string_view twoDigitCodes =
    "20 27 30 31 32 33 34 36 39 40 41 43 44 45 46 47 48 49 51 52 53 54 55 56 57 58 60 61 "
    "62 63 64 65 66 81 82 84 86 90 91 92 93 94 95 98";
constexpr std::size_t longestCode = 3;
/// Anything shorter is a number of a service, dialled in one breath.
constexpr std::size_t fewestDigits = 7;
constexpr std::size_t mostDigits = 15;
constexpr std::size_t groupLength = 3;

std::size_t lengthOfCountryCode(std::string_view digits)
{
    if (oneDigitCodes.find(digits.front()) != std::string_view::npos)
        return 1;
    return twoDigitCodes.find(digits.substr(0, 2)) != std::string_view::npos ? 2 : longestCode;
}

/// The last group takes a digit that would stand alone.
std::string inGroups(std::string_view digits)
{
    std::string grouped;
    while (digits.size() > groupLength + 1) {
        grouped.append(digits.substr(0, groupLength)).append(" ");
        digits.remove_prefix(groupLength);
    }
    return grouped.append(digits);
}

} // namespace

std::string groupedPhoneNumber(const std::string& number)
{
    std::string_view digits = number;
    const bool international = digits.starts_with('+');
    if (international)
        digits.remove_prefix(1);
    const bool plain = digits.find_first_not_of(decimalDigits) == std::string_view::npos;
    if (!plain || digits.size() < fewestDigits || digits.size() > mostDigits)
        return number;
    if (!international)
        return inGroups(digits);
    const std::size_t code = lengthOfCountryCode(digits);
    return "+" + std::string(digits.substr(0, code)) + " " + inGroups(digits.substr(code));
}
