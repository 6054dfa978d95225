#include "Storage/BinaryListGuard.h"

#include "Storage/BigEndian.h"
#include "Storage/PropertyListLimits.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view magic = "bplist";
constexpr std::string_view header = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr std::size_t widest = 8;

enum Type : std::uint8_t {
    Singleton = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Date = 0x3,
    Data = 0x4,
    Ascii = 0x5,
    Utf16 = 0x6,
    Uid = 0x8,
    Array = 0xA,
    Dictionary = 0xD
};

constexpr std::uint8_t falseInfo = 8;
constexpr std::uint8_t trueInfo = 9;
constexpr std::uint8_t longCount = 0xF;
constexpr std::uint8_t longCountMarker = 0x13;
constexpr std::uint8_t emptyAsciiMarker = 0x50;
constexpr std::uint8_t longUtf16Marker = 0x6F;
constexpr std::uint8_t integer64Marker = 0x13;

/// An object of the list: what its marker says, and where what follows the marker lies.
struct Object {
    std::uint8_t type = 0;
    std::uint8_t info = 0;
    std::size_t begin = 0;
    /// Bytes, UTF-16 units, items or entries.
    std::size_t count = 0;

    bool isContainer() const { return type == Array || type == Dictionary; }
    std::size_t references() const { return type == Dictionary ? 2 * count : count; }
};

/// What an object unfolds to, itself included.
struct Extent {
    std::size_t values = 1;
    std::size_t bytes = 0;
    std::size_t depth = 0;

    bool add(const Extent& other)
    {
        values += other.values;
        bytes += other.bytes;
        depth = std::max(depth, other.depth);
        return values <= PropertyListLimits::values && bytes <= PropertyListLimits::bytes;
    }
};

enum class State { Unknown, Open, Checked };

struct Node {
    State state = State::Unknown;
    Object object;
    Extent extent;
    bool canBeKey = false;
    /// The object in another form, for libplist's sake; empty when it can stay as it is.
    Bytes replacement;
};

struct Frame {
    std::size_t index;
    std::size_t nextReference;
};

class BinaryList {
public:
    explicit BinaryList(const Bytes& bytes)
        : _bytes(bytes)
    {
    }

    bool isSound() { return readTrailer() && checkOffsets() && walk(); }
    /// The list with the objects replaced that libplist would misread.
    Bytes forLibplist() const;

private:
    bool readTrailer();
    bool checkOffsets() const;
    bool walk();
    bool visit(std::size_t index);
    bool step();
    void close();

    std::size_t offset(std::size_t index) const
    {
        return readBigEndian(&_bytes[_table + index * _offsetSize], _offsetSize);
    }
    std::uint64_t reference(const Object& object, std::size_t which) const
    {
        return readBigEndian(&_bytes[object.begin + which * _referenceSize], _referenceSize);
    }
    std::optional<Object> objectAt(std::size_t index) const;
    bool readCount(Object& object) const;
    bool fits(const Object& object, std::size_t unitSize) const
    {
        return object.count <= (_table - object.begin) / unitSize;
    }
    bool check(Node& node) const;
    bool checkInteger(Node& node) const;
    bool checkAscii(Node& node) const;
    bool checkUtf16(Node& node) const;

    const Bytes& _bytes;
    std::size_t _offsetSize = 0;
    std::size_t _referenceSize = 0;
    std::size_t _root = 0;
    std::size_t _table = 0;
    std::vector<Node> _nodes;
    std::vector<Frame> _frames;
    /// Kept for the whole list, because containers that are still open have not added up yet what they hold.
    std::size_t _followed = 0;
    std::size_t _scanned = 0;
};

bool BinaryList::readTrailer()
{
    if (_bytes.size() > PropertyListLimits::bytes || _bytes.size() < header.size() + trailerSize
        || !std::equal(header.begin(), header.end(), _bytes.begin()))
        return false;
    const std::size_t trailer = _bytes.size() - trailerSize;
    _offsetSize = _bytes[trailer + 6];
    _referenceSize = _bytes[trailer + 7];
    const std::uint64_t count = readBigEndian(&_bytes[trailer + 8], 8);
    const std::uint64_t root = readBigEndian(&_bytes[trailer + 16], 8);
    const std::uint64_t table = readBigEndian(&_bytes[trailer + 24], 8);
    if (_offsetSize < 1 || _offsetSize > widest || _referenceSize < 1 || _referenceSize > widest)
        return false;
    if (count > PropertyListLimits::values || root >= count || table < header.size() || table > trailer)
        return false;
    if (trailer - table != count * _offsetSize)
        return false;
    _root = root;
    _table = table;
    _nodes.resize(count);
    return true;
}

bool BinaryList::checkOffsets() const
{
    for (std::size_t i = 0; i < _nodes.size(); ++i) {
        if (offset(i) < header.size() || offset(i) >= _table)
            return false;
    }
    return true;
}

bool BinaryList::walk()
{
    if (!visit(_root))
        return false;
    while (!_frames.empty()) {
        const Frame& frame = _frames.back();
        if (frame.nextReference == _nodes[frame.index].object.references())
            close();
        else if (!step())
            return false;
    }
    return _nodes[_root].extent.depth <= PropertyListLimits::depth;
}

/// Adds the next object that the innermost open container refers to, or opens it first when it is not known yet.
bool BinaryList::step()
{
    Frame& frame = _frames.back();
    Node& parent = _nodes[frame.index];
    const std::uint64_t index = reference(parent.object, frame.nextReference);
    if (index >= _nodes.size() || _nodes[index].state == State::Open)
        return false;
    const Node& child = _nodes[index];
    if (child.state == State::Unknown)
        return visit(index);
    const bool isKey = parent.object.type == Dictionary && frame.nextReference < parent.object.count;
    if (isKey && !child.canBeKey)
        return false;
    ++frame.nextReference;
    ++_followed;
    return _followed <= PropertyListLimits::values && parent.extent.add(child.extent);
}

bool BinaryList::visit(std::size_t index)
{
    Node& node = _nodes[index];
    const auto object = objectAt(index);
    if (!object)
        return false;
    node.object = *object;
    if (!object->isContainer()) {
        node.state = State::Checked;
        const bool isSound = check(node);
        _scanned += node.extent.bytes;
        return isSound && _scanned <= PropertyListLimits::bytes;
    }
    node.state = State::Open;
    _frames.push_back({ index, 0 });
    return object->references() <= PropertyListLimits::values
        && fits(*object, _referenceSize * (object->type == Dictionary ? 2 : 1));
}

void BinaryList::close()
{
    Node& node = _nodes[_frames.back().index];
    node.state = State::Checked;
    ++node.extent.depth;
    _frames.pop_back();
}

std::optional<Object> BinaryList::objectAt(std::size_t index) const
{
    const std::size_t begin = offset(index);
    Object object;
    object.type = _bytes[begin] >> 4;
    object.info = _bytes[begin] & 0xF;
    object.begin = begin + 1;
    object.count = object.info;
    const bool isCounted = object.isContainer() || object.type == Data || object.type == Ascii || object.type == Utf16;
    if (isCounted && object.info == longCount && !readCount(object))
        return std::nullopt;
    return object;
}

bool BinaryList::readCount(Object& object) const
{
    if (object.begin == _table)
        return false;
    const std::uint8_t marker = _bytes[object.begin];
    if (marker >> 4 != Integer || marker > longCountMarker)
        return false;
    const std::size_t width = std::size_t { 1 } << (marker & 0xF);
    ++object.begin;
    if (width > _table - object.begin)
        return false;
    const std::uint64_t count = readBigEndian(&_bytes[object.begin], width);
    // No object has more bytes, units or references than that, and sums of smaller numbers do not overflow.
    if (count > PropertyListLimits::bytes)
        return false;
    object.begin += width;
    object.count = count;
    return true;
}

/// Of an object that is no container.
bool BinaryList::check(Node& node) const
{
    const Object& object = node.object;
    const std::size_t room = _table - object.begin;
    switch (object.type) {
    case Singleton:
        return object.info == falseInfo || object.info == trueInfo;
    case Integer:
        return checkInteger(node);
    case Real:
        return (object.info == 2 || object.info == 3) && std::size_t { 1 } << object.info <= room;
    case Date:
        return object.info == 3 && room >= 8;
    case Data:
        node.extent.bytes = object.count;
        return fits(object, 1);
    case Ascii:
        return checkAscii(node);
    case Utf16:
        return checkUtf16(node);
    case Uid:
        return object.info < widest && object.info < room;
    default:
        return false;
    }
}

bool BinaryList::checkInteger(Node& node) const
{
    const Object& object = node.object;
    if (object.info > 4 || std::size_t { 1 } << object.info > _table - object.begin)
        return false;
    if (object.info < 4)
        return true;
    const std::uint64_t high = readBigEndian(&_bytes[object.begin], 8);
    const std::uint64_t low = readBigEndian(&_bytes[object.begin + 8], 8);
    if (high == 0)
        return true;
    // libplist drops the high half, which would make -5 into 2^64-5.
    node.replacement.push_back(integer64Marker);
    appendBigEndian(node.replacement, low, 8);
    return high == ~std::uint64_t { 0 } && low >> 63 == 1;
}

bool BinaryList::checkAscii(Node& node) const
{
    const Object& object = node.object;
    if (!fits(object, 1))
        return false;
    const auto begin = _bytes.begin() + static_cast<std::ptrdiff_t>(object.begin);
    const auto end = begin + static_cast<std::ptrdiff_t>(object.count);
    node.extent.bytes = object.count;
    node.canBeKey = std::find(begin, end, 0) == end;
    if (!node.canBeKey) {
        // libplist ends an ASCII text at its first NUL, but not an UTF-16 one.
        node.replacement = { longUtf16Marker, longCountMarker };
        appendBigEndian(node.replacement, object.count, 8);
        for (auto at = begin; at != end; ++at)
            appendBigEndian(node.replacement, *at, 2);
    }
    return std::all_of(begin, end, [](std::uint8_t byte) { return byte < 0x80; });
}

bool BinaryList::checkUtf16(Node& node) const
{
    const Object& object = node.object;
    if (!fits(object, 2))
        return false;
    node.extent.bytes = 2 * object.count;
    node.canBeKey = true;
    bool expectsLow = false;
    for (std::size_t i = 0; i < object.count; ++i) {
        const std::uint64_t unit = readBigEndian(&_bytes[object.begin + 2 * i], 2);
        const bool isLow = unit >= 0xDC00 && unit <= 0xDFFF;
        if (isLow != expectsLow)
            return false;
        expectsLow = unit >= 0xD800 && unit <= 0xDBFF;
        node.canBeKey = node.canBeKey && unit != 0;
    }
    // libplist takes an empty UTF-16 text for a fault.
    if (object.count == 0)
        node.replacement.push_back(emptyAsciiMarker);
    return !expectsLow;
}

Bytes BinaryList::forLibplist() const
{
    if (std::all_of(_nodes.begin(), _nodes.end(), [](const Node& node) { return node.replacement.empty(); }))
        return _bytes;
    Bytes list(_bytes.begin(), _bytes.begin() + static_cast<std::ptrdiff_t>(_table));
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < _nodes.size(); ++i) {
        const Bytes& replacement = _nodes[i].replacement;
        offsets.push_back(replacement.empty() ? offset(i) : list.size());
        list.insert(list.end(), replacement.begin(), replacement.end());
    }
    const std::size_t table = list.size();
    for (const std::size_t offset : offsets)
        appendBigEndian(list, offset, widest);
    appendBigEndian(list, 0, 6);
    list.push_back(widest);
    list.push_back(static_cast<std::uint8_t>(_referenceSize));
    appendBigEndian(list, _nodes.size(), 8);
    appendBigEndian(list, _root, 8);
    appendBigEndian(list, table, 8);
    return list;
}

} // namespace

bool isBinaryList(const Bytes& bytes)
{
    return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin());
}

std::optional<Bytes> guardedBinaryList(const Bytes& bytes)
{
    BinaryList list(bytes);
    if (!list.isSound())
        return std::nullopt;
    return list.forLibplist();
}
