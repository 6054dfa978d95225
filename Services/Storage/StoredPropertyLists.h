#pragma once

#include "Phone/PropertyLists.h"

/// Property lists as they stand in files: binary, XML, and the text form of string tables.
///
/// What is read and written back has every value as it was, in kind and content: negative integers and those from 2^63
/// to 2^64-1, fractions of seconds, dates of any year, the sign of zero, texts and keys with U+0000. A key that stands
/// twice in a dictionary has its last value. What a binary list refers to from several places is one shared value.
///
/// Time and memory are proportional to the file, whatever is in it. Nothing is read from more than 16 MiB, from
/// containers nested deeper than 512, from bytes that are cut off or otherwise malformed, and from nulls and sets,
/// which no property list can hold though the binary format has markers for them.
class StoredPropertyLists final : public PropertyLists {
public:
    std::optional<Value> read(const Bytes& bytes) const override;
    std::optional<Bytes> writeBinary(const Value& value, std::string& error) const override;
};
