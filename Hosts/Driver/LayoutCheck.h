#pragma once

#include "Runtime/Value.h"

#include <string>
#include <vector>

/// Holds the page definitions of the bundle at that path against the rules that the pages rely on. A line for each
/// fault: the file, the row, the rule; none when there are no faults. The plug-in's module must be loaded.
std::vector<std::string> layoutFaults(const std::string& bundlePath);
