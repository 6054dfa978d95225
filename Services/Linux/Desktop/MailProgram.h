#pragma once

#include "Linux/Desktop/DesktopProgram.h"
#include "Phone/Mail.h"

/// What has xdg-email show the draft with those files of this machine attached; nothing where it is not installed.
ProgramCommand mailCommand(const MailDraft& draft, const std::vector<std::string>& files);
