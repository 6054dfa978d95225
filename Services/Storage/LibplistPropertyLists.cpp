#include "Storage/LibplistPropertyLists.h"

#include "Foundation/NSString.h"
#include "Runtime/NSObject.h"
#include "Storage/BigEndian.h"
#include "Storage/BinaryListGuard.h"
#include "Storage/PropertyListLimits.h"
#include "Storage/Utf8.h"
#include "Storage/XmlListGuard.h"

#include <plist/plist.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace {

constexpr std::string_view uidKey = "CF$UID";
constexpr std::uint64_t largestUid = std::numeric_limits<std::uint32_t>::max();

const std::string tooManyBytes = "more than " + std::to_string(PropertyListLimits::bytes) + " bytes";

constexpr std::string_view scalarListHeader = "bplist00";
constexpr std::uint8_t integer64Marker = 0x13;
constexpr std::uint8_t integer128Marker = 0x14;
constexpr std::uint8_t dateMarker = 0x33;
constexpr std::uint8_t longUtf16Marker = 0x6F;

struct PlistDeleter {
    void operator()(void* plist) const { plist_free(plist); }
};
using Plist = std::unique_ptr<void, PlistDeleter>;

struct MallocDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Malloced = std::unique_ptr<T, MallocDeleter>;

const char* characters(const Bytes& bytes)
{
    return reinterpret_cast<const char*>(bytes.data());
}

/// The list as libplist writes it in binary.
Bytes binary(plist_t plist)
{
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(plist, &bytes, &length);
    const Malloced<char> owner(bytes);
    return Bytes(bytes, bytes + length);
}

Plist plistFromBinary(const Bytes& bytes)
{
    plist_t plist = nullptr;
    plist_from_bin(characters(bytes), static_cast<std::uint32_t>(bytes.size()), &plist);
    return Plist(plist);
}

Plist plistFromXml(const std::string& text)
{
    plist_t plist = nullptr;
    plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &plist);
    return Plist(plist);
}

/// The plist of one scalar, given as it stands in a binary list: marker and content. So come into being the scalars
/// that libplist has no constructor for.
Plist plistOfScalar(const Bytes& scalar)
{
    constexpr std::size_t offsetSize = 1, referenceSize = 1, objects = 1, root = 0;
    Bytes list(scalarListHeader.begin(), scalarListHeader.end());
    list.insert(list.end(), scalar.begin(), scalar.end());
    const std::size_t table = list.size();
    appendBigEndian(list, scalarListHeader.size(), offsetSize);
    appendBigEndian(list, 0, 6);
    appendBigEndian(list, offsetSize, 1);
    appendBigEndian(list, referenceSize, 1);
    appendBigEndian(list, objects, 8);
    appendBigEndian(list, root, 8);
    appendBigEndian(list, table, 8);
    return plistFromBinary(list);
}

Value integerOf(plist_t node)
{
    std::uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    if (bits <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        return Value(bits);
    // The bits do not tell -5 from 2^64-5. A node made of them counts as signed, and nodes of unlike sign as different.
    const Plist negative(plist_new_uint(bits));
    if (plist_compare_node_value(node, negative.get()))
        return Value(static_cast<std::int64_t>(bits));
    return Value(bits);
}

double realOf(plist_t node)
{
    double value = 0;
    plist_get_real_val(node, &value);
    return value;
}

/// libplist gives out dates as 32-bit seconds, but writes them whole.
Date dateOf(plist_t node)
{
    const Bytes list = binary(node);
    return { std::bit_cast<double>(readBigEndian(&list[scalarListHeader.size() + 1], sizeof(double))) };
}

Bytes dataOf(plist_t node)
{
    std::uint64_t length = 0;
    const char* bytes = plist_get_data_ptr(node, &length);
    return Bytes(bytes, bytes + length);
}

std::string textOf(plist_t node)
{
    std::uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    return std::string(text, length);
}

/// XML has no UIDs of its own: there, and there alone, the dictionary that holds nothing but this key stands for one.
Value uidOrDictionary(Dictionary entries)
{
    const Value& index = valueForKey(entries, uidKey);
    if (entries.size() == 1 && index.kind() == Value::Kind::Integer && index.integer() >= 0
        && static_cast<std::uint64_t>(index.integer()) <= largestUid)
        return Uid { static_cast<std::uint64_t>(index.integer()) };
    return entries;
}

enum class Encoding { Binary, Xml };

Value valueOf(plist_t node, Encoding encoding);

Array arrayOf(plist_t node, Encoding encoding)
{
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const Malloced<void> owner(iterator);
    Array items;
    items.reserve(plist_array_get_size(node));
    plist_t item = nullptr;
    for (plist_array_next_item(node, iterator, &item); item; plist_array_next_item(node, iterator, &item))
        items.push_back(valueOf(item, encoding));
    return items;
}

Dictionary dictionaryOf(plist_t node, Encoding encoding)
{
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const Malloced<void> owner(iterator);
    Dictionary entries;
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &key, &item);
        const Malloced<char> keyOwner(key);
        if (!item)
            return entries;
        entries.insert_or_assign(key, valueOf(item, encoding));
    }
}

Value valueOf(plist_t node, Encoding encoding)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT:
        return integerOf(node);
    case PLIST_REAL:
        return realOf(node);
    case PLIST_STRING:
        return textOf(node);
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_DATA:
        return dataOf(node);
    case PLIST_UID: {
        Uid uid;
        plist_get_uid_val(node, &uid.index);
        return uid;
    }
    case PLIST_ARRAY:
        return arrayOf(node, encoding);
    case PLIST_DICT: {
        Dictionary entries = dictionaryOf(node, encoding);
        return encoding == Encoding::Xml ? uidOrDictionary(std::move(entries)) : Value(std::move(entries));
    }
    default:
        return {};
    }
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

bool holdsNul(std::string_view text)
{
    return text.find('\0') != std::string_view::npos;
}

/// Makes a plist of a value. Every step gives null when the value is none that a property list can hold, and what it is
/// instead is then in problem().
class PlistBuilder {
public:
    Plist build(const Value& value);
    const std::string& problem() const { return _problem; }
    /// Whether any text holds a NUL.
    bool metNul() const { return _metNul; }

private:
    Plist fail(std::string problem);
    Plist integer(std::int64_t value) { return Plist(plist_new_uint(static_cast<std::uint64_t>(value))); }
    Plist unsignedInteger(std::uint64_t value);
    Plist text(const std::string& value);
    Plist data(const Bytes& value);
    Plist date(Date value);
    Plist uid(Uid value);
    Plist array(const Array& items);
    Plist dictionary(const Dictionary& entries);
    bool enterContainer();
    bool countValue();
    bool countBytes(std::size_t count);
    bool checkText(const std::string& value);

    std::string _problem;
    std::size_t _depth = 0;
    std::size_t _values = 0;
    std::size_t _bytes = 0;
    bool _metNul = false;
};

Plist PlistBuilder::fail(std::string problem)
{
    _problem = std::move(problem);
    return nullptr;
}

Plist PlistBuilder::build(const Value& value)
{
    if (!countValue())
        return nullptr;
    switch (value.kind()) {
    case Value::Kind::Null:
        return fail("NULL");
    case Value::Kind::Boolean:
        return Plist(plist_new_bool(value.boolean()));
    case Value::Kind::Integer:
        return integer(value.integer());
    case Value::Kind::Unsigned:
        return unsignedInteger(value.unsignedInteger());
    case Value::Kind::Real:
        return Plist(plist_new_real(value.real()));
    case Value::Kind::String:
        return text(*value.string());
    case Value::Kind::Data:
        return data(*value.data());
    case Value::Kind::Date:
        return date(value.date());
    case Value::Kind::Uid:
        return uid(value.uid());
    case Value::Kind::Array:
        return array(*value.array());
    case Value::Kind::Dictionary:
        return dictionary(*value.dictionary());
    case Value::Kind::Object:
        return fail("objects of type '" + value.object()->isa().name() + "'");
    case Value::Kind::Class:
        return fail("objects of type 'Class'");
    }
    return nullptr;
}

Plist PlistBuilder::unsignedInteger(std::uint64_t value)
{
    Bytes scalar { integer128Marker };
    appendBigEndian(scalar, 0, 8);
    appendBigEndian(scalar, value, 8);
    return plistOfScalar(scalar);
}

Plist PlistBuilder::text(const std::string& value)
{
    if (!checkText(value))
        return nullptr;
    if (!holdsNul(value))
        return Plist(plist_new_string(value.c_str()));
    _metNul = true;
    const std::string units = bigEndianUtf16(value);
    Bytes scalar { longUtf16Marker, integer64Marker };
    appendBigEndian(scalar, units.size() / 2, 8);
    scalar.insert(scalar.end(), units.begin(), units.end());
    return plistOfScalar(scalar);
}

Plist PlistBuilder::data(const Bytes& value)
{
    if (!countBytes(value.size()))
        return nullptr;
    return Plist(plist_new_data(value.empty() ? "" : characters(value), value.size()));
}

Plist PlistBuilder::date(Date value)
{
    Bytes scalar { dateMarker };
    appendBigEndian(scalar, std::bit_cast<std::uint64_t>(value.secondsSinceReferenceDate), 8);
    return plistOfScalar(scalar);
}

Plist PlistBuilder::uid(Uid value)
{
    if (value.index > largestUid)
        return fail("UIDs above " + std::to_string(largestUid));
    return Plist(plist_new_uid(value.index));
}

Plist PlistBuilder::array(const Array& items)
{
    if (!enterContainer())
        return nullptr;
    Plist array(plist_new_array());
    for (const Value& value : items) {
        Plist item = build(value);
        if (!item)
            return nullptr;
        plist_array_append_item(array.get(), item.release());
    }
    --_depth;
    return array;
}

Plist PlistBuilder::dictionary(const Dictionary& entries)
{
    if (!enterContainer())
        return nullptr;
    Plist dictionary(plist_new_dict());
    for (const auto& [key, value] : entries) {
        if (!countValue() || !checkText(key))
            return nullptr;
        if (holdsNul(key))
            return fail("keys with a NUL character");
        Plist item = build(value);
        if (!item)
            return nullptr;
        plist_dict_set_item(dictionary.get(), key.c_str(), item.release());
    }
    --_depth;
    return dictionary;
}

bool PlistBuilder::enterContainer()
{
    if (++_depth <= PropertyListLimits::depth)
        return true;
    fail("containers nested deeper than " + std::to_string(PropertyListLimits::depth));
    return false;
}

/// Keys count as values.
bool PlistBuilder::countValue()
{
    if (++_values <= PropertyListLimits::values)
        return true;
    fail("more than " + std::to_string(PropertyListLimits::values) + " values");
    return false;
}

bool PlistBuilder::countBytes(std::size_t count)
{
    _bytes += count;
    if (_bytes <= PropertyListLimits::bytes)
        return true;
    fail(tooManyBytes);
    return false;
}

bool PlistBuilder::checkText(const std::string& value)
{
    if (!isUtf8(value)) {
        fail("texts that are no UTF-8");
        return false;
    }
    return countBytes(isAscii(value) ? value.size() : 2 * utf16Length(value));
}

void collectTexts(const Value& value, std::vector<std::string_view>& texts)
{
    if (const auto* text = value.string())
        texts.push_back(*text);
    if (const auto* items = value.array()) {
        for (const Value& item : *items)
            collectTexts(item, texts);
    }
    if (const auto* entries = value.dictionary()) {
        for (const auto& [key, entry] : *entries)
            collectTexts(entry, texts);
    }
}

bool holdSameTexts(const Value& value, const Value& other)
{
    std::vector<std::string_view> texts, otherTexts;
    collectTexts(value, texts);
    collectTexts(other, otherTexts);
    return texts == otherTexts;
}

} // namespace

std::optional<Value> LibplistPropertyLists::read(const Bytes& bytes) const
{
    Plist plist;
    const Encoding encoding = isBinaryList(bytes) ? Encoding::Binary : Encoding::Xml;
    if (encoding == Encoding::Binary) {
        if (const auto list = guardedBinaryList(bytes))
            plist = plistFromBinary(*list);
    } else {
        if (const auto list = guardedXmlList(bytes))
            plist = plistFromXml(*list);
    }
    if (!plist)
        return std::nullopt;
    return valueOf(plist.get(), encoding);
}

std::optional<Bytes> LibplistPropertyLists::writeBinary(const Value& value, std::string& error) const
{
    const auto refuse = [&](const std::string& content) {
        error = "Property list invalid for format: 200 (property lists cannot contain " + content + ")";
        return std::nullopt;
    };
    PlistBuilder builder;
    const Plist plist = builder.build(value);
    if (!plist)
        return refuse(builder.problem());
    Bytes bytes = binary(plist.get());
    if (bytes.size() > PropertyListLimits::bytes)
        return refuse(tooManyBytes);
    if (builder.metNul()) {
        // libplist writes equal texts once, and takes some for equal that differ only after a NUL.
        const auto written = read(bytes);
        if (!written || !holdSameTexts(value, *written))
            return refuse("texts that differ only after a NUL character");
    }
    return bytes;
}
