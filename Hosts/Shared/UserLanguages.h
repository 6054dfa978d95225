#pragma once

#include <string>
#include <vector>

/// The languages that the user wants texts in, best first: "de-AT" and "de" for "de_AT.UTF-8". The environment says so
/// as it does for every program: LC_ALL, LC_MESSAGES and LANG name the locale, and the list in LANGUAGE takes its place
/// unless it is the C locale. None for the C locale.
std::vector<std::string> userLanguages();
