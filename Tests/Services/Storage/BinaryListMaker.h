#pragma once

#include "Runtime/Value.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

/// Puts a binary property list together object by object, sound or not.
class BinaryListMaker {
public:
    explicit BinaryListMaker(std::size_t referenceSize = 4)
        : _referenceSize(referenceSize)
    {
    }

    /// Adds an object as it stands in the file, marker and content; its index.
    std::size_t add(const Bytes& object);
    /// Containers of the objects at those indices, which need not be there yet. A dictionary's keys come first.
    std::size_t addArray(const std::vector<std::size_t>& items);
    std::size_t addDictionary(const std::vector<std::size_t>& keys, const std::vector<std::size_t>& values);

    Bytes list(std::size_t root) const;
    Bytes list() const { return list(_offsets.size() - 1); }

    struct Trailer {
        std::uint8_t offsetSize;
        std::uint8_t referenceSize;
        std::uint64_t objects;
        std::uint64_t root;
        std::uint64_t table;
    };
    Trailer trailer(std::size_t root = 0) const;
    /// The list with another trailer than its own.
    Bytes listWith(const Trailer& trailer) const;

private:
    std::size_t addContainer(std::uint8_t marker, std::size_t count, const std::vector<std::size_t>& references);

    std::size_t _referenceSize;
    Bytes _objects;
    std::vector<std::size_t> _offsets;
};

/// The list of one object.
Bytes listOf(const Bytes& object);

/// A marker with its count in eight bytes behind it.
Bytes markerWithCount(std::uint8_t marker, std::uint64_t count);
