#pragma once

#include "Phone/Result.h"
#include "Runtime/Class.h"

#include <string>

class DiskFiles;

/// Loads the module of the bundle at that path of the phone, and gives its principal class, as its Info.plist names
/// them. Never null. Modules stay loaded.
Result<const Class*> loadPrincipalClass(const DiskFiles& files, const std::string& bundlePath);
