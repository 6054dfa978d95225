#pragma once

#include "Runtime/Value.h"

#include <optional>
#include <string>

/// Reads property lists of every format and writes binary ones.
class PropertyLists {
public:
    virtual ~PropertyLists() = default;

    /// The root of a property list; nothing when the bytes are none, or too many, or when containers nest too deep. The
    /// format is that of the content: binary, XML, or the text form of string tables, which gives a dictionary of
    /// texts.
    virtual std::optional<Value> read(const Bytes& bytes) const = 0;

    /// The bytes of a binary property list; or nothing, and the reason in `error`: an object, a class or null somewhere
    /// in the value, a text that is no UTF-8, containers nested too deep, too many bytes.
    virtual std::optional<Bytes> writeBinary(const Value& value, std::string& error) const = 0;
};
