#pragma once

#include <string>
#include <vector>

/// Prints the notifications of those names, or all where none is given, a line each as they arrive, until the process
/// is stopped. "watching" on standard error tells that it listens. False when there is no bus, or when it goes away.
bool watchNotifications(const std::vector<std::string>& names);
