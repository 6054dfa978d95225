#pragma once

#include "Runtime/Value.h"

#include <optional>
#include <string>

/// Reads property lists of any encoding and writes binary ones. Implemented over libplist in Services.
class PropertyLists {
public:
    virtual ~PropertyLists() = default;

    /// The root of a property list, XML or binary by its content; nothing when the bytes are none, when containers nest
    /// too deep, or when it would unfold to too many values to be read without a wait.
    virtual std::optional<Value> read(const Bytes& bytes) const = 0;

    /// The bytes of a binary property list, version 1.0; or nothing, and the reason in `error`: an object, a class or
    /// null somewhere in the value, containers nested too deep.
    virtual std::optional<Bytes> writeBinary(const Value& value, std::string& error) const = 0;
};
