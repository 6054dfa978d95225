#pragma once

#include <string>
#include <string_view>

enum class LineBreaks { Kept, Written };

/// A text as a terminal may get it, whoever it is from: characters that would move the cursor, colour or turn around
/// what follows, and bytes that are no text, are written as "\x1b". Line breaks are kept or written too.
std::string plainText(std::string_view text, LineBreaks lineBreaks = LineBreaks::Written);
