#pragma once

#include "Runtime/Value.h"

#include <optional>
#include <string>

/// The installed version: the package manager's word, as it came, else the "Version" of the bundle; absent when neither
/// knows. Runs a process and waits for it.
std::optional<std::string> getProductVersion();

/// What the package manager prints as the version of that package; absent when it cannot be run or exits with an error.
std::optional<std::string> packageVersion(const std::string& packageIdentifier);

/// The bundle's "Root.plist", kept once it has been read; null while it cannot be.
const Dictionary* getProductInfoDict();
