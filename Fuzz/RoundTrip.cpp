#include "RoundTrip.h"

#include "Foundation/NSString.h"
#include "Storage/BinaryListReader.h"
#include "Storage/BinaryListWriter.h"
#include "Storage/PropertyListRules.h"

#include <cstdlib>
#include <iostream>

namespace {

constexpr std::string_view tooLong = "more than ";

void expect(bool holds, const std::string& what)
{
    if (holds)
        return;
    std::cerr << what << '\n';
    std::abort();
}

std::string_view textOf(const Bytes& bytes)
{
    return { reinterpret_cast<const char*>(bytes.data()), bytes.size() };
}

std::optional<Value> valueFrom(Value (*read)(std::string_view bytes), std::string_view bytes)
{
    try {
        return read(bytes);
    } catch (const MalformedList&) {
        return std::nullopt;
    }
}

std::optional<Bytes> written(const Value& value)
{
    try {
        return binaryListOf(value);
    } catch (const UnwritableValue& unwritable) {
        expect(unwritable.content.starts_with(tooLong), "cannot be written: " + unwritable.content);
        return std::nullopt;
    }
}

} // namespace

void checkRoundTrip(Value (*read)(std::string_view bytes), const std::uint8_t* bytes, std::size_t size)
{
    const auto value = valueFrom(read, { reinterpret_cast<const char*>(bytes), size });
    const auto list = value ? written(*value) : std::nullopt;
    if (!list)
        return;
    const auto again = valueFrom(valueOfBinaryList, textOf(*list));
    expect(again.has_value(), "cannot be read again");
    // A number that is none does not equal itself.
    expect(*again == *value || descriptionOf(*again) == descriptionOf(*value), "reads differently");
    expect(written(*again) == list, "is written differently");
}
