#pragma once

#include "Runtime/Value.h"

#include <optional>
#include <string>

/// An XML property list, whole and within PropertyListLimits, rewritten so that libplist takes it quickly and without
/// loss; nothing for any other bytes. The text is UTF-8, with or without a byte order mark.
///
/// libplist's parser accepts half of a file, needs a time that grows with the square of the number of entities or of
/// keys that share a hash, takes "010" for octal, and reads reals by the locale's decimal sign. So it is given a plain
/// form of the list: elements alone, each text in CDATA, each number spelt in one way.
std::optional<std::string> guardedXmlList(const Bytes& bytes);
