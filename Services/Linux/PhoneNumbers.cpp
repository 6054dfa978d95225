#include "Linux/PhoneNumbers.h"

#include <phonenumbers/phonenumberutil.h>

namespace {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

constexpr const char* unknownRegion = "ZZ";

} // namespace

std::string formattedPhoneNumber(const std::string& number, const std::string& region)
{
    const PhoneNumberUtil& rules = *PhoneNumberUtil::GetInstance();
    PhoneNumber parsed;
    const auto failure = rules.Parse(number, region.empty() ? unknownRegion : region, &parsed);
    if (failure != PhoneNumberUtil::NO_PARSING_ERROR || !rules.IsPossibleNumber(parsed))
        return number;
    std::string formatted;
    rules.Format(
        parsed, number.starts_with('+') ? PhoneNumberUtil::INTERNATIONAL : PhoneNumberUtil::NATIONAL, &formatted);
    return formatted;
}
