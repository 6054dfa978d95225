#include "Phone/CTXPCServiceSubscriptionContext.h"

#include <algorithm>
#include <string_view>

NS_IMPLEMENTATION(NSUUID, NS_METHOD(UUIDString))
NS_IMPLEMENTATION(CTXPCServiceSubscriptionContext, NS_METHOD(uuid), NS_METHOD(label), NS_METHOD(phoneNumber),
    NS_METHOD(userDefaultVoice))

namespace {

/// An "x" stands for a hexadecimal digit.
constexpr std::string_view uuidShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
constexpr std::string_view hexDigits = "0123456789abcdefABCDEF";

bool isUuid(std::string_view text)
{
    return std::ranges::equal(text, uuidShape, [](char character, char shape) {
        return shape == 'x' ? hexDigits.find(character) != std::string_view::npos : character == shape;
    });
}

char upperCased(char character)
{
    return static_cast<char>(character >= 'a' && character <= 'z' ? character - 'a' + 'A' : character);
}

} // namespace

NSUUID::NSUUID(std::string text)
    : _text(std::move(text))
{
    if (isUuid(_text))
        std::ranges::transform(_text, _text.begin(), upperCased);
}

CTXPCServiceSubscriptionContext::CTXPCServiceSubscriptionContext(Subscription subscription)
    : _subscription(std::move(subscription))
    , _uuid(std::make_shared<NSUUID>(_subscription.uuid))
{
}

std::string CTXPCServiceSubscriptionContext::description() const
{
    return "<CTXPCServiceSubscriptionContext " + uuid().UUIDString() + ", label "
        + _subscription.label.value_or("(null)") + ">";
}
