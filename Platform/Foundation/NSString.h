#pragma once

#include "Runtime/Value.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// What "%@" prints for a value: "(null)", 1 and 0 for booleans, numbers, texts as they are, containers over several
/// lines with the keys in ascending order, objects by their own description. What makes it longer than 4 MiB is cut.
std::string descriptionOf(const Value& value);

/// The format with its placeholders filled: %@ for any value, %ld, %lu and %d for integers, %% for a percent sign. They
/// take the arguments in order; one with a position, as %2$@, takes the argument of that number and leaves the order of
/// the others. A placeholder without an argument prints "(null)"; anything else after a percent sign stands as it is.
std::string stringWithFormat(std::string_view format, std::initializer_list<Value> arguments);

/// The two joined with exactly one separator between them, and none at the end.
std::string stringByAppendingPathComponent(std::string_view path, std::string_view component);

/// The bytes outside letters, digits and "-._~" as %XX of their UTF-8.
std::string stringByAddingPercentEscapes(std::string_view text);

/// The pieces between the separators; one piece, the whole text, where there is no separator.
std::vector<std::string> componentsSeparatedByString(std::string_view text, char separator);

/// The number of UTF-16 units of a UTF-8 text, which is how ranges of attributed strings are counted.
/// A byte that belongs to no character counts as one unit.
std::size_t utf16Length(std::string_view text);

/// The bytes as text, every sequence that is not UTF-8 replaced by U+FFFD.
std::string stringFromUtf8(std::string_view bytes);
