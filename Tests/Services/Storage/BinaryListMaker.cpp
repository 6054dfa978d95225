#include "BinaryListMaker.h"
#include "BigEndian.h"

#include <string_view>

namespace {

constexpr std::string_view header = "bplist00";
constexpr std::uint8_t offsetSize = 8;
constexpr std::size_t trailerSize = 32;

} // namespace

std::size_t BinaryListMaker::add(const Bytes& object)
{
    _offsets.push_back(header.size() + _objects.size());
    _objects.insert(_objects.end(), object.begin(), object.end());
    return _offsets.size() - 1;
}

std::size_t BinaryListMaker::addArray(const std::vector<std::size_t>& items)
{
    return addContainer(0xAF, items.size(), items);
}

std::size_t BinaryListMaker::addDictionary(const std::vector<std::size_t>& keys, const std::vector<std::size_t>& values)
{
    std::vector<std::size_t> references = keys;
    references.insert(references.end(), values.begin(), values.end());
    return addContainer(0xDF, keys.size(), references);
}

std::size_t BinaryListMaker::addContainer(
    std::uint8_t marker, std::size_t count, const std::vector<std::size_t>& references)
{
    Bytes object = markerWithCount(marker, count);
    for (const std::size_t reference : references)
        appendBigEndian(object, reference, _referenceSize);
    return add(object);
}

BinaryListMaker::Trailer BinaryListMaker::trailer(std::size_t root) const
{
    return { offsetSize, static_cast<std::uint8_t>(_referenceSize), _offsets.size(), root,
        header.size() + _objects.size() };
}

Bytes BinaryListMaker::list(std::size_t root) const
{
    return listWith(trailer(root));
}

Bytes BinaryListMaker::listWith(const Trailer& trailer) const
{
    Bytes list;
    list.reserve(header.size() + _objects.size() + offsetSize * _offsets.size() + trailerSize);
    list.assign(header.begin(), header.end());
    list.insert(list.end(), _objects.begin(), _objects.end());
    for (const std::size_t offset : _offsets)
        appendBigEndian(list, offset, offsetSize);
    appendBigEndian(list, 0, 6);
    list.push_back(trailer.offsetSize);
    list.push_back(trailer.referenceSize);
    appendBigEndian(list, trailer.objects, 8);
    appendBigEndian(list, trailer.root, 8);
    appendBigEndian(list, trailer.table, 8);
    return list;
}

Bytes listOf(const Bytes& object)
{
    BinaryListMaker maker;
    maker.add(object);
    return maker.list();
}

Bytes markerWithCount(std::uint8_t marker, std::uint64_t count)
{
    Bytes object { marker, 0x13 };
    appendBigEndian(object, count, 8);
    return object;
}
