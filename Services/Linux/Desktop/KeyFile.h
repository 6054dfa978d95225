#pragma once

#include <string>

/// The value in a file of groups of keys, as desktops keep their settings; empty when the file, the group or the key is
/// missing, or the file is larger than a megabyte. Of a key that stands twice the last counts.
std::string valueInKeyFile(const std::string& file, const std::string& group, const std::string& key);
