#include "Storage/StoredPropertyLists.h"

#include "Storage/BinaryListReader.h"
#include "Storage/BinaryListWriter.h"
#include "Storage/PropertyListRules.h"
#include "Storage/StringTableReader.h"
#include "Storage/XmlListReader.h"

namespace {

using namespace std::string_view_literals;

constexpr std::string_view binaryBegin = "bplist";
/// Byte order marks, spaces, and the zeros of UTF-16.
constexpr std::string_view skipped = "\xEF\xBB\xBF\xFE\xFF \t\r\n\0"sv;

Value rootOf(std::string_view bytes)
{
    if (bytes.starts_with(binaryBegin))
        return valueOfBinaryList(bytes);
    const std::size_t first = bytes.find_first_not_of(skipped);
    require(first != std::string_view::npos);
    return bytes[first] == '<' ? valueOfXmlList(bytes) : valueOfStringTable(bytes);
}

} // namespace

std::optional<Value> StoredPropertyLists::read(const Bytes& bytes) const
{
    if (bytes.size() > PropertyListLimits::bytes)
        return std::nullopt;
    try {
        return rootOf({ reinterpret_cast<const char*>(bytes.data()), bytes.size() });
    } catch (const MalformedList&) {
        return std::nullopt;
    }
}

std::optional<Bytes> StoredPropertyLists::writeBinary(const Value& value, std::string& error) const
{
    try {
        return binaryListOf(value);
    } catch (const UnwritableValue& unwritable) {
        error = "Property list invalid for format: 200 (property lists cannot contain " + unwritable.content + ")";
        return std::nullopt;
    }
}
