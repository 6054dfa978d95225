#pragma once

#include "Linux/Bus/BusContext.h"

#include <functional>
#include <string>
#include <vector>

/// A program with its arguments; nothing for none.
using ProgramCommand = std::vector<std::string>;

/// The path of the program in the first folder of PATH that has it; empty when there is none. Folders that are not
/// absolute do not count. An absolute path is the program's own.
std::string pathOfProgram(const std::string& name);

/// Starts a program that does something for the user, with nothing to read and nowhere to write to. It outlives this
/// one. Null when it cannot be started.
///
/// The function is called on the context: with false when the program fails within a few seconds, with true when it
/// ends well or goes on after that.
BusHandle startProgram(BusContext& context, const ProgramCommand& command, std::function<void(bool)> ended);
