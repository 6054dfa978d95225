#pragma once

#include <optional>
#include <string>
#include <vector>

/// A SIM as the telephony service describes it. What the service does not know is absent.
struct Subscription {
    /// The text of its UUID.
    std::string uuid;
    std::optional<std::string> label;
    std::optional<std::string> phoneNumber;
    std::optional<std::string> carrier;
    /// The user's default line for calls.
    bool userDefaultVoice = false;

    bool operator==(const Subscription&) const = default;
};

/// The phone's active SIMs.
class Subscriptions {
public:
    virtual ~Subscriptions() = default;
    /// In slot order.
    virtual std::vector<Subscription> subscriptions() const = 0;
    /// The number as people write it; a text that is no number comes back as it is.
    virtual std::string formattedNumber(const std::string& number) const = 0;
};
