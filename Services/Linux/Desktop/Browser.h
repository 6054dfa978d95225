#pragma once

#include "Linux/Desktop/DesktopProgram.h"

/// What opens a link of the web in the program that the user chose for such links; nothing where there is none, or it
/// needs a terminal.
ProgramCommand browserCommand(const std::string& url);
