#pragma once

#include <string>

/// Runs the script with those arguments; what it printed, on either output.
std::string runPython(const std::string& script, const std::string& arguments);
