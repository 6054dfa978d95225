#pragma once

#include "Foundation/NSBundle.h"

#include <string>

/// A text of the program in the user's language, by the English one.
inline std::string translated(const char* text)
{
    return NSBundle::mainBundle()->localizedStringForKey_value_table(text, "", "");
}
