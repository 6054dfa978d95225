#include "Storage/BinaryListWriter.h"

#include "Foundation/Utf8.h"
#include "Runtime/NSObject.h"
#include "Storage/BinaryListFormat.h"
#include "Storage/PropertyListRules.h"
#include "Storage/Utf16.h"

#include <algorithm>
#include <random>
#include <unordered_map>

namespace {

using namespace BinaryListFormat;

/// Longer texts and data are known again by their address, before they are encoded.
constexpr std::size_t mostEncodedAgain = 64;

/// 1, 2, 4 or 8 bytes.
std::size_t widthOf(std::uint64_t number)
{
    return std::bit_ceil(std::max<std::size_t>(1, (static_cast<std::size_t>(std::bit_width(number)) + 7) / 8));
}

std::string bigEndian(std::uint64_t number, std::size_t width)
{
    std::string bytes(width, '\0');
    for (std::size_t i = width; i-- > 0; number >>= 8)
        bytes[i] = static_cast<char>(number);
    return bytes;
}

std::string marker(Type type, std::size_t info)
{
    return bigEndian(static_cast<std::size_t>(type) << 4 | info, 1);
}

/// The marker of a number of that width, which is a power of two.
std::string markerOfWidth(Type type, std::size_t width)
{
    return marker(type, static_cast<std::size_t>(std::countr_zero(width)));
}

std::string integer(std::uint64_t number)
{
    const std::size_t width = widthOf(number);
    return markerOfWidth(Type::Integer, width) + bigEndian(number, width);
}

/// In eight bytes it would be negative.
std::string unsignedInteger(std::uint64_t number)
{
    return markerOfWidth(Type::Integer, 16) + bigEndian(0, 8) + bigEndian(number, 8);
}

std::string real(Type type, double number)
{
    return markerOfWidth(type, 8) + bigEndian(std::bit_cast<std::uint64_t>(number), 8);
}

std::string uid(std::uint64_t index)
{
    const std::size_t width = widthOf(index);
    return marker(Type::Uid, width - 1) + bigEndian(index, width);
}

std::string markerWithCount(Type type, std::size_t count)
{
    return count < longCount ? marker(type, count) : marker(type, longCount) + integer(count);
}

std::string data(const Bytes& bytes)
{
    return markerWithCount(Type::Data, bytes.size()).append(bytes.begin(), bytes.end());
}

std::string text(const std::string& text)
{
    if (std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; }))
        return markerWithCount(Type::Ascii, text.size()) + text;
    if (!isUtf8(text))
        throw UnwritableValue { "texts that are no UTF-8" };
    const std::string units = bigEndianUtf16(text);
    return markerWithCount(Type::Utf16, units.size() / 2) + units;
}

void requireFit(std::size_t bytes)
{
    if (bytes > PropertyListLimits::bytes)
        throw UnwritableValue { "more than " + std::to_string(PropertyListLimits::bytes) + " bytes" };
}

void requireDepth(std::size_t depth)
{
    if (depth > PropertyListLimits::depth)
        throw UnwritableValue { "containers nested deeper than " + std::to_string(PropertyListLimits::depth) };
}

/// The polynomial of the bytes, in words, at a point that every process chooses anew: nobody can make a file whose
/// scalars have all the same hash.
struct ContentHash {
    std::size_t operator()(const std::string& bytes) const
    {
        constexpr std::uint64_t prime = 4'294'967'311;
        static const std::uint64_t point = std::random_device()() >> 1 | std::uint64_t { 1 } << 30;
        std::uint64_t hash = bytes.size();
        for (std::size_t i = 0; i < bytes.size(); i += sizeof(std::uint32_t)) {
            std::uint32_t word = 0;
            bytes.copy(reinterpret_cast<char*>(&word), sizeof word, i);
            hash = (hash * point + word) % prime;
        }
        return hash;
    }
};

struct Place {
    std::uint32_t index = 0;
    /// How deep containers nest in it, itself included.
    std::size_t height = 0;
};

/// An encoded scalar, or a container whose members' places are in a run of others.
struct Object {
    const std::string* scalar = nullptr;
    Type type = Type::Array;
    std::size_t begin = 0;
    std::size_t size = 0;
};

/// Gives each object a place, a container's before those of its members, and then writes them in that order.
class BinaryList {
public:
    Place add(const Value& value);
    Bytes bytes() const;

private:
    Place addNew(const Value& value);
    Place addScalar(std::string encoded);
    Place addArray(const Array& items);
    Place addDictionary(const Dictionary& entries);
    Place open(Type type, std::size_t size);
    void setMember(Place& container, std::size_t which, Place member);
    std::string encoded(const Object& object, std::size_t referenceSize) const;

    std::vector<Object> _objects;
    std::vector<std::uint32_t> _members;
    std::unordered_map<std::string, Place, ContentHash> _scalars;
    std::unordered_map<const void*, Place> _byAddress;
    std::size_t _depth = 0;
    std::size_t _size = 0;
};

/// Of a container, and of a long text or data; null for what is encoded again where it stands a second time.
const void* addressOf(const Value& value)
{
    if (value.string())
        return value.string()->size() > mostEncodedAgain ? value.string() : nullptr;
    if (value.data())
        return value.data()->size() > mostEncodedAgain ? value.data() : nullptr;
    return value.array() ? static_cast<const void*>(value.array()) : value.dictionary();
}

Place BinaryList::add(const Value& value)
{
    const void* const address = addressOf(value);
    if (!address)
        return addNew(value);
    const auto known = _byAddress.find(address);
    if (known == _byAddress.end())
        return _byAddress.emplace(address, addNew(value)).first->second;
    requireDepth(_depth + known->second.height);
    return known->second;
}

Place BinaryList::addNew(const Value& value)
{
    switch (value.kind()) {
    case Value::Kind::Null:
        throw UnwritableValue { "NULL" };
    case Value::Kind::Boolean:
        return addScalar(marker(Type::Boolean, value.boolean() ? trueInfo : falseInfo));
    case Value::Kind::Integer:
        return addScalar(integer(static_cast<std::uint64_t>(value.integer())));
    case Value::Kind::Unsigned:
        return addScalar(unsignedInteger(value.unsignedInteger()));
    case Value::Kind::Real:
        return addScalar(real(Type::Real, value.real()));
    case Value::Kind::String:
        requireFit(value.string()->size());
        return addScalar(text(*value.string()));
    case Value::Kind::Data:
        requireFit(value.data()->size());
        return addScalar(data(*value.data()));
    case Value::Kind::Date:
        return addScalar(real(Type::Date, value.date().secondsSinceReferenceDate));
    case Value::Kind::Uid:
        return addScalar(uid(value.uid().index));
    case Value::Kind::Array:
        return addArray(*value.array());
    case Value::Kind::Dictionary:
        return addDictionary(*value.dictionary());
    case Value::Kind::Object:
        throw UnwritableValue { "objects of type '" + value.object()->isa().name() + "'" };
    case Value::Kind::Class:
        break;
    }
    throw UnwritableValue { "objects of type 'Class'" };
}

Place BinaryList::addScalar(std::string encoded)
{
    const Place next { static_cast<std::uint32_t>(_objects.size()) };
    const auto [scalar, isNew] = _scalars.try_emplace(std::move(encoded), next);
    if (isNew) {
        requireFit(_size += scalar->first.size());
        _objects.push_back({ &scalar->first });
    }
    return scalar->second;
}

Place BinaryList::addArray(const Array& items)
{
    Place array = open(Type::Array, items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        setMember(array, i, add(items[i]));
    --_depth;
    return array;
}

/// The keys stand before the values.
Place BinaryList::addDictionary(const Dictionary& entries)
{
    Place dictionary = open(Type::Dictionary, 2 * entries.size());
    std::size_t which = 0;
    for (const auto& [key, entry] : entries)
        setMember(dictionary, which++, addScalar(text(key)));
    for (const auto& [key, entry] : entries)
        setMember(dictionary, which++, add(entry));
    --_depth;
    return dictionary;
}

Place BinaryList::open(Type type, std::size_t size)
{
    requireDepth(++_depth);
    requireFit(_size += 1 + size);
    const Place place { static_cast<std::uint32_t>(_objects.size()), 1 };
    _objects.push_back({ nullptr, type, _members.size(), size });
    _members.resize(_members.size() + size);
    return place;
}

void BinaryList::setMember(Place& container, std::size_t which, Place member)
{
    _members[_objects[container.index].begin + which] = member.index;
    container.height = std::max(container.height, member.height + 1);
}

std::string BinaryList::encoded(const Object& object, std::size_t referenceSize) const
{
    if (object.scalar)
        return *object.scalar;
    std::string bytes = markerWithCount(object.type, object.type == Type::Dictionary ? object.size / 2 : object.size);
    for (std::size_t i = 0; i < object.size; ++i)
        bytes += bigEndian(_members[object.begin + i], referenceSize);
    return bytes;
}

Bytes BinaryList::bytes() const
{
    std::string list(header);
    std::vector<std::size_t> offsets;
    const std::size_t referenceSize = widthOf(_objects.size() - 1);
    for (const Object& object : _objects) {
        offsets.push_back(list.size());
        list += encoded(object, referenceSize);
    }
    const std::size_t table = list.size();
    const std::size_t offsetSize = widthOf(table);
    for (const std::size_t offset : offsets)
        list += bigEndian(offset, offsetSize);
    list += bigEndian(0, unusedTrailerSize) + bigEndian(offsetSize, 1) + bigEndian(referenceSize, 1);
    list += bigEndian(offsets.size(), 8) + bigEndian(0, 8) + bigEndian(table, 8);
    requireFit(list.size());
    return Bytes(list.begin(), list.end());
}

} // namespace

Bytes binaryListOf(const Value& root)
{
    BinaryList list;
    list.add(root);
    return list.bytes();
}
