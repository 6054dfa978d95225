#include "Storage/BinaryListReader.h"

#include "Storage/BinaryListFormat.h"
#include "Storage/PropertyListRules.h"
#include "Storage/Utf16.h"

#include <algorithm>

namespace {

using namespace BinaryListFormat;

constexpr std::size_t widest = 8;
/// Each dictionary has copies of its keys. A file where many dictionaries share long keys has more bytes of them than
/// itself, but none that is of use comes near this.
constexpr std::size_t mostKeyBytes = std::size_t { 256 } << 20;

/// Takes bytes and big-endian numbers from the front.
class Cursor {
public:
    explicit Cursor(std::string_view bytes)
        : _rest(bytes)
    {
    }

    std::size_t size() const { return _rest.size(); }
    std::string_view take(std::uint64_t count, std::size_t sizeOfEach = 1)
    {
        require(count <= _rest.size() / sizeOfEach);
        const std::string_view taken = _rest.substr(0, count * sizeOfEach);
        _rest.remove_prefix(taken.size());
        return taken;
    }
    std::uint64_t takeNumber(std::size_t width)
    {
        std::uint64_t number = 0;
        for (const char byte : take(width)) {
            require(number >> 56 == 0);
            number = number << 8 | static_cast<std::uint8_t>(byte);
        }
        return number;
    }
    std::uint64_t takeCount(unsigned info)
    {
        if (info != longCount)
            return info;
        const std::uint64_t marker = takeNumber(1);
        require(static_cast<Type>(marker >> 4) == Type::Integer && (marker & 0xF) <= 3);
        return takeNumber(std::size_t { 1 } << (marker & 0xF));
    }

private:
    std::string_view _rest;
};

/// Integers of less than eight bytes have no sign; those of sixteen fit into eight.
Value integerOf(Cursor& cursor, unsigned info)
{
    require(info <= 4);
    const std::uint64_t high = info == 4 ? cursor.takeNumber(8) : 0;
    const std::uint64_t low = cursor.takeNumber(std::size_t { 1 } << std::min(info, 3U));
    const auto withSign = static_cast<std::int64_t>(low);
    if (info == 3 || (high == ~std::uint64_t { 0 } && withSign < 0))
        return withSign;
    require(high == 0);
    return low;
}

Value realOf(Cursor& cursor, unsigned info)
{
    require(info == 2 || info == 3);
    if (info == 3)
        return std::bit_cast<double>(cursor.takeNumber(8));
    return double { std::bit_cast<float>(static_cast<std::uint32_t>(cursor.takeNumber(4))) };
}

Value asciiOf(std::string_view bytes)
{
    require(std::ranges::all_of(bytes, [](char c) { return (c & 0x80) == 0; }));
    return bytes;
}

Value scalarOf(Cursor& cursor, Type type, unsigned info)
{
    switch (type) {
    case Type::Boolean:
        require(info == falseInfo || info == trueInfo);
        return info == trueInfo;
    case Type::Integer:
        return integerOf(cursor, info);
    case Type::Real:
        return realOf(cursor, info);
    case Type::Date:
        require(info == 3);
        return Date { realOf(cursor, info).real() };
    case Type::Data: {
        const std::string_view bytes = cursor.take(cursor.takeCount(info));
        return Bytes(bytes.begin(), bytes.end());
    }
    case Type::Ascii:
        return asciiOf(cursor.take(cursor.takeCount(info)));
    case Type::Utf16:
        return utf8FromUtf16(cursor.take(cursor.takeCount(info), 2), std::endian::big);
    case Type::Uid:
        return Uid { cursor.takeNumber(info + std::size_t { 1 }) };
    default:
        throw MalformedList();
    }
}

/// Reads by recursion, a level for each container.
class BinaryList {
public:
    explicit BinaryList(std::string_view bytes);
    Value root() { return objectAt(_root).value; }

private:
    struct Object {
        /// Null until it is read.
        Value value;
        /// How deep containers nest in it, itself included.
        std::uint16_t height = 0;
        bool isOpen = false;
    };

    std::uint64_t numberAt(std::string_view numbers, std::size_t index, std::size_t width) const
    {
        return Cursor(numbers.substr(index * width)).takeNumber(width);
    }
    const Object& objectAt(std::uint64_t index);
    const Value& memberAt(Object& container, std::string_view references, std::size_t index);
    void read(Object& object, std::uint64_t offset);
    void readContainer(Object& object, Type type, std::string_view references);
    Value arrayOf(Object& array, std::string_view references);
    Value dictionaryOf(Object& dictionary, std::string_view references);
    void count(std::size_t size) { require((_readBytes += size) <= _content.size()); }

    /// Up to the table of offsets.
    std::string_view _content;
    std::string_view _offsets;
    std::size_t _offsetSize = 0;
    std::size_t _referenceSize = 0;
    std::uint64_t _root = 0;
    std::vector<Object> _objects;
    std::size_t _depth = 0;
    std::size_t _readBytes = 0;
    std::size_t _keyBytes = 0;
};

BinaryList::BinaryList(std::string_view bytes)
{
    require(bytes.starts_with(header) && bytes.size() >= header.size() + trailerSize);
    const std::size_t tableEnd = bytes.size() - trailerSize;
    Cursor trailer(bytes.substr(tableEnd + unusedTrailerSize));
    _offsetSize = trailer.takeNumber(1);
    _referenceSize = trailer.takeNumber(1);
    const std::uint64_t objects = trailer.takeNumber(8);
    _root = trailer.takeNumber(8);
    const std::uint64_t table = trailer.takeNumber(8);
    require(_offsetSize >= 1 && _offsetSize <= widest && _referenceSize >= 1 && _referenceSize <= widest);
    require(table >= header.size() && table <= tableEnd);
    // No object is smaller than a byte.
    require(objects <= table - header.size() && objects * _offsetSize == tableEnd - table);
    _content = bytes.substr(0, table);
    _offsets = bytes.substr(table, tableEnd - table);
    _objects.resize(objects);
}

const BinaryList::Object& BinaryList::objectAt(std::uint64_t index)
{
    require(index < _objects.size());
    Object& object = _objects[index];
    // An open one would contain itself.
    require(!object.isOpen);
    if (object.value.isNull())
        read(object, numberAt(_offsets, index, _offsetSize));
    require(_depth + object.height <= PropertyListLimits::depth);
    return object;
}

const Value& BinaryList::memberAt(Object& container, std::string_view references, std::size_t index)
{
    const Object& member = objectAt(numberAt(references, index, _referenceSize));
    container.height = std::max<std::uint16_t>(container.height, member.height + 1);
    return member.value;
}

void BinaryList::read(Object& object, std::uint64_t offset)
{
    require(offset >= header.size() && offset < _content.size());
    Cursor cursor(_content.substr(offset));
    const std::size_t room = cursor.size();
    const std::uint64_t marker = cursor.takeNumber(1);
    const auto type = static_cast<Type>(marker >> 4);
    const auto info = static_cast<unsigned>(marker & 0xF);
    if (type != Type::Array && type != Type::Dictionary) {
        object.value = scalarOf(cursor, type, info);
        count(room - cursor.size());
        return;
    }
    const std::size_t sizeOfEach = type == Type::Array ? _referenceSize : 2 * _referenceSize;
    const std::string_view references = cursor.take(cursor.takeCount(info), sizeOfEach);
    count(room - cursor.size());
    readContainer(object, type, references);
}

void BinaryList::readContainer(Object& object, Type type, std::string_view references)
{
    require(_depth < PropertyListLimits::depth);
    ++_depth;
    object.isOpen = true;
    object.height = 1;
    object.value = type == Type::Array ? arrayOf(object, references) : dictionaryOf(object, references);
    object.isOpen = false;
    --_depth;
}

Value BinaryList::arrayOf(Object& array, std::string_view references)
{
    const std::size_t count = references.size() / _referenceSize;
    Array items;
    items.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(memberAt(array, references, i));
    return items;
}

/// The references to all keys stand before those to the values.
Value BinaryList::dictionaryOf(Object& dictionary, std::string_view references)
{
    const std::size_t count = references.size() / _referenceSize / 2;
    Dictionary entries;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string* key = memberAt(dictionary, references, i).string();
        require(key && (_keyBytes += key->size()) <= mostKeyBytes);
        entries.insert_or_assign(entries.end(), *key, memberAt(dictionary, references, count + i));
    }
    return entries;
}

} // namespace

Value valueOfBinaryList(std::string_view bytes)
{
    return BinaryList(bytes).root();
}
