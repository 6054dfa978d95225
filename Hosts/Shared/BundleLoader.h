#pragma once

#include "Runtime/Class.h"

#include <string>

class DiskFiles;

/// Loads the module of the bundle at that path of the phone, and gives its principal class, as its Info.plist names
/// them. Null, and the reason in `error`, when there is no such bundle or it cannot be loaded. Modules stay loaded.
const Class* loadPrincipalClass(const DiskFiles& files, const std::string& bundlePath, std::string& error);
