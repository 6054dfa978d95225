#pragma once

#include "Phone/Result.h"
#include "Runtime/Class.h"

#include <string>

class DiskFiles;

/// The path of the plug-in's bundle on the phone.
inline constexpr const char* pluginBundlePath = "/Library/PreferenceBundles/TandemPreferences.bundle";

/// Loads the module of the bundle at that path of the phone, and gives its principal class, as its Info.plist names
/// them. Never null. Modules stay loaded.
Result<const Class*> loadPrincipalClass(const DiskFiles& files, const std::string& bundlePath);
