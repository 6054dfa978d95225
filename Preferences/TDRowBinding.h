#pragma once

#include "PreferencesUI/PSSpecifier.h"

/// What is stored for a control's value: the opposite of its boolean reading where the row says "negate", else the
/// value itself. Reading does not undo it.
Value valueToStore(const Value& value, const PSSpecifier& row);
