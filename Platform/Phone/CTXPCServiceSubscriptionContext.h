#pragma once

#include "Phone/Subscriptions.h"
#include "Runtime/NSObject.h"

#include <optional>
#include <string>

/// A UUID as the telephony service gives it.
class NSUUID final : public NSObject {
    NS_CLASS(NSUUID, NSObject)
public:
    NSUUID() = default;
    explicit NSUUID(std::string text);

    /// 36 characters, in upper case whatever the text was; a text that is no UUID stays as it is.
    const std::string& UUIDString() const { return _text; }

private:
    std::string _text;
};

/// A SIM as the telephony framework describes it.
class CTXPCServiceSubscriptionContext final : public NSObject {
    NS_CLASS(CTXPCServiceSubscriptionContext, NSObject)
public:
    CTXPCServiceSubscriptionContext() = default;
    explicit CTXPCServiceSubscriptionContext(Subscription subscription);

    const NSUUID& uuid() const { return *_uuid; }
    /// Absent when the service gives none.
    const std::optional<std::string>& label() const { return _subscription.label; }
    const std::optional<std::string>& phoneNumber() const { return _subscription.phoneNumber; }
    /// The carrier's display name, absent when it is unknown.
    const std::optional<std::string>& carrierName() const { return _subscription.carrier; }
    /// The user's default line for calls.
    bool userDefaultVoice() const { return _subscription.userDefaultVoice; }

    std::string description() const override;

private:
    Subscription _subscription;
    std::shared_ptr<NSUUID> _uuid = std::make_shared<NSUUID>();
};
