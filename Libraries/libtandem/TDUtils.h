#pragma once

#include "Phone/CTXPCServiceSubscriptionContext.h"
#include "Runtime/NSObject.h"
#include "UIKit/UIColor.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Names carriers.
class TDCarrierBundleController final : public NSObject {
    NS_CLASS(TDCarrierBundleController, NSObject)
public:
    /// The carrier's display name; absent when it is unknown.
    std::optional<std::string> localizedCarrierNameForSubscriptionContext(
        const std::shared_ptr<CTXPCServiceSubscriptionContext>& context) const;
};

/// The product's utilities.
class TDUtils {
public:
    using Contexts = std::vector<std::shared_ptr<CTXPCServiceSubscriptionContext>>;

    /// One line in the system log, the format filled as by stringWithFormat; while logging is on, in the log file too.
    static void logMessage(std::string_view format, std::initializer_list<Value> arguments);
    /// True while the system shows its dark appearance.
    static bool isDarkModeEnabled();
    /// The colour of the bar above a page of that class, and of a switch in a cell of it.
    static UIColor navigationBarColor(const Class& cls);
    /// The phone's active SIMs in slot order; none without a telephony service.
    static Contexts fetchSubscriptions();
    static std::shared_ptr<TDCarrierBundleController> carrierBundleController();
    /// The number as people write it; an absent number is an empty text.
    static std::string formattedPhoneNumber(const std::optional<std::string>& number);
};
