#pragma once

#include "Phone/PairedDevices.h"
#include "Phone/Result.h"
#include "Phone/Subscriptions.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// What a file says about its phone. A service that the file leaves out, or gives as null, is absent.
struct DemoDescription {
    std::optional<bool> dark;
    std::optional<double> textScale;
    std::optional<bool> reducedMotion;
    double scale = 2;
    std::optional<std::vector<Subscription>> subscriptions;
    std::optional<std::vector<PairedDevice>> pairedDevices;
    /// A picture file for each app, as the file writes it.
    std::optional<std::map<std::string, std::string>> homeScreen;
    /// Picture files, as the file writes them.
    std::vector<std::string> photos;
};

/// Fails with the name of the file, the place in it and what is wrong there, when the file does not describe a phone.
/// Raises nothing, whatever the file holds.
Result<DemoDescription> readDemoDescription(const std::string& file);
