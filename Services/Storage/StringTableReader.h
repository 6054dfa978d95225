#pragma once

#include "Runtime/Value.h"

/// The dictionary of a string table: `"key" = "value";` in UTF-8, or in UTF-16 with a byte order mark, with comments of
/// both kinds. Words of ASCII letters, digits and "_$/:.-" need no quotes. Throws MalformedList when the bytes
/// are none.
Value valueOfStringTable(std::string_view bytes);
