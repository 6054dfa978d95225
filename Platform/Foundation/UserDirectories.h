#pragma once

#include <string>

/// The folders of the phone in which apps keep what belongs to its user, composed at each call.

/// "/var/mobile/Library/Preferences".
std::string preferencesDirectory();
/// "/var/mobile/Library/Logs".
std::string logsDirectory();
/// "/var/mobile/Library/Caches".
std::string cachesDirectory();
