#include "Linux/Telephony/PhoneNumberModule.h"

#include <phonenumbers/phonenumberutil.h>

namespace {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

constexpr const char* unknownRegion = "ZZ";

} // namespace

void tandemFormatPhoneNumber(const std::string& number, const std::string& region, std::string& formatted)
{
    const PhoneNumberUtil& rules = *PhoneNumberUtil::GetInstance();
    PhoneNumber parsed;
    const auto failure = rules.Parse(number, region.empty() ? unknownRegion : region, &parsed);
    // The rules would write any other without the 0 before it, which the region's own numbers begin with.
    if (failure != PhoneNumberUtil::NO_PARSING_ERROR || !rules.IsValidNumber(parsed))
        return;
    rules.Format(
        parsed, number.starts_with('+') ? PhoneNumberUtil::INTERNATIONAL : PhoneNumberUtil::NATIONAL, &formatted);
}
