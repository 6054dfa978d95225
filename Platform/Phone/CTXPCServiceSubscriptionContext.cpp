#include "Phone/CTXPCServiceSubscriptionContext.h"

NS_IMPLEMENTATION(NSUUID)
NS_IMPLEMENTATION(CTXPCServiceSubscriptionContext)

CTXPCServiceSubscriptionContext::CTXPCServiceSubscriptionContext(Subscription subscription)
    : _subscription(std::move(subscription))
    , _uuid(std::make_shared<NSUUID>(_subscription.uuid))
{
}

std::string CTXPCServiceSubscriptionContext::description() const
{
    return "<CTXPCServiceSubscriptionContext " + _subscription.uuid + ", label "
        + _subscription.label.value_or("(null)") + ">";
}
