#include "libtandem/TDUtils.h"

#include "Foundation/NSString.h"
#include "Phone/Phone.h"
#include "libtandem/TDAccentColor.h"
#include "libtandem/TDLogFile.h"
#include "libtandem/TDSettings.h"

NS_IMPLEMENTATION(TDCarrierBundleController, NS_METHOD(localizedCarrierNameForSubscriptionContext))

std::optional<std::string> TDCarrierBundleController::localizedCarrierNameForSubscriptionContext(
    const std::shared_ptr<CTXPCServiceSubscriptionContext>& context) const
{
    return context ? context->carrierName() : std::nullopt;
}

void TDUtils::logMessage(std::string_view format, std::initializer_list<Value> arguments)
{
    const std::string line = stringWithFormat(format, arguments);
    if (const auto& log = Phone::current().systemLog)
        log->write(line);
    if (TDSettings::sharedSettings()->isLoggingEnabled())
        appendToLogFile(line);
}

bool TDUtils::isDarkModeEnabled()
{
    const auto& appearance = Phone::current().appearance;
    return appearance && appearance->isDark();
}

UIColor TDUtils::navigationBarColor(const Class& /*cls*/)
{
    return accentColor;
}

TDUtils::Contexts TDUtils::fetchSubscriptions()
{
    Contexts contexts;
    if (const auto& service = Phone::current().subscriptions) {
        for (Subscription& subscription : service->subscriptions())
            contexts.push_back(std::make_shared<CTXPCServiceSubscriptionContext>(std::move(subscription)));
    }
    return contexts;
}

std::shared_ptr<TDCarrierBundleController> TDUtils::carrierBundleController()
{
    static const auto controller = std::make_shared<TDCarrierBundleController>();
    return controller;
}

std::string TDUtils::formattedPhoneNumber(const std::optional<std::string>& number)
{
    const auto& service = Phone::current().subscriptions;
    return number && service ? service->formattedNumber(*number) : number.value_or(std::string());
}
