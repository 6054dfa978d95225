#pragma once

#include <string>

/// Adds a line, with the time before it, to the product's log file. The file is kept below one mebibyte: where it would
/// grow beyond, its older half goes. A line that cannot be written is lost, and nothing is said.
void appendToLogFile(const std::string& line);
