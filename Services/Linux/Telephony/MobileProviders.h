#pragma once

#include <string>
#include <unordered_map>

/// The carriers of the world by the codes of their networks, as mobile-broadband-provider-info lists them.
class MobileProviders {
public:
    static constexpr const char* installedFile = "/usr/share/mobile-broadband-provider-info/serviceproviders.xml";

    /// Reads the file; a missing one, or one that is no such list, makes a list without carriers.
    explicit MobileProviders(const std::string& file = installedFile);

    /// The carrier with that MCC and MNC, as "26201"; empty when it is unknown.
    std::string nameOf(const std::string& network) const;
    /// The region, as "DE", to which the network belongs; empty when it is unknown.
    std::string regionOf(const std::string& network) const;

private:
    std::unordered_map<std::string, std::string> _names;
    /// By the first three digits of the network.
    std::unordered_map<std::string, std::string> _regions;
};
