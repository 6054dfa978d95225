#pragma once

#include <string>
#include <vector>

/// The folders of the user and, after them, those of the system, as $XDG_... name them or as they are where it does
/// not. What the environment says when one of them is first asked for counts until the program ends.
std::vector<std::string> dataFolders();
std::vector<std::string> configurationFolders();
