#pragma once

#include <string>

/// The icon theme that the user chose for the desktop: the one that the settings portal names or, where it names none,
/// the one in the settings file of the desktop or of GTK. Empty where there is no choice.
std::string chosenIconTheme(const std::string& namedByPortal);
