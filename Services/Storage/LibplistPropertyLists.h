#pragma once

#include "Phone/PropertyLists.h"

/// Property lists by way of libplist.
///
/// What is read and written back has every value as it was, in kind and content: negative integers and those from 2^63
/// to 2^64-1, fractions of seconds, dates of any year, the sign of zero, texts that hold a NUL. A key that stands twice
/// in a dictionary has its last value.
///
/// Nothing is read from bytes that are cut off or otherwise no whole XML or binary list, from lists beyond
/// PropertyListLimits, and from lists that hold what no property list can: nulls, sets, texts that are no Unicode,
/// UIDs above 2^32-1, keys with a NUL.
class LibplistPropertyLists final : public PropertyLists {
public:
    std::optional<Value> read(const Bytes& bytes) const override;
    /// Besides objects, classes, nulls and depth, `error` may tell of any of what is not read.
    std::optional<Bytes> writeBinary(const Value& value, std::string& error) const override;
};
