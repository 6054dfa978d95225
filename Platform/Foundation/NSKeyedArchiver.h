#pragma once

#include "Runtime/NSObject.h"

#include <optional>
#include <string>

/// What a class does to be kept in a keyed archive. A class registers itself once, from its source file.
struct KeyedCoding {
    /// The fields of an object, as values that a property list can hold; null when it cannot be archived.
    Value (*encode)(NSObject& object);
    /// The object that has those fields; null when they are not those of such an object.
    std::shared_ptr<NSObject> (*decode)(const Dictionary& fields);
};

/// Registers how objects of that class are archived. True, so that it can initialise a constant.
bool registerKeyedCoding(const Class& cls, KeyedCoding coding);

/// Objects and values as keyed archives: a binary property list with a table of objects.
class NSKeyedArchiver {
public:
    /// Nothing when the value holds an object of a class that cannot be archived.
    static std::optional<Bytes> archivedDataWithRootObject(const Value& root);
};

class NSKeyedUnarchiver {
public:
    /// The root of the archive; null when the data are no archive, refer to themselves in a circle, or hold a class
    /// that is not known here.
    static Value unarchiveObjectWithData(const Bytes& data);
};
