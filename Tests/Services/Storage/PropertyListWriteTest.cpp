#include "Storage/LibplistPropertyLists.h"

#include "Runtime/NSObject.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace {

class Logo final : public NSObject {
    NS_CLASS(Logo, NSObject)
};

/// What is read from what was written.
std::optional<Value> writtenAndRead(const Value& value)
{
    std::string error;
    const auto bytes = LibplistPropertyLists().writeBinary(value, error);
    EXPECT_EQ(error, "");
    return bytes ? LibplistPropertyLists().read(*bytes) : std::nullopt;
}

std::string errorOf(const Value& value)
{
    std::string error;
    EXPECT_EQ(LibplistPropertyLists().writeBinary(value, error), std::nullopt);
    return error;
}

Value nestedArrays(std::size_t depth)
{
    Value value = Array();
    for (std::size_t i = 1; i < depth; ++i)
        value = Array { value };
    return value;
}

} // namespace

NS_IMPLEMENTATION(Logo)

TEST(PropertyListWrite, BytesAreABinaryListOfVersionOne)
{
    std::string error;
    const Bytes expected { 'b', 'p', 'l', 'i', 's', 't', '0', '0', 0xD1, 1, 2, 0x51, 'a', 0x09, 8, 11, 13, 0, 0, 0, 0,
        0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 14 };
    EXPECT_EQ(LibplistPropertyLists().writeBinary(Dictionary { { "a", true } }, error), expected);
}

TEST(PropertyListWrite, EveryValueComesBack)
{
    using namespace std::string_literals;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Array values { true, false, 0, 1, -1, 255, 256, 65536, 16777216, 4294967296,
        std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(), 9223372036854775808UL,
        18446744073709551611UL, -5, 18446744073709551615UL, 0.0, 0.1, 1.5, -1e300, infinity, -infinity, Date { 0 },
        Date { -0.5 }, Date { 1e12 + 0.25 }, Date { -1e11 }, "", "text", "ä 電 😀", "a\0b"s, "\0"s, "ä\0"s, Bytes(),
        Bytes { 0, 1, 2 }, Bytes(1000, 0xFF), Uid { 0 }, Uid { 255 }, Uid { 65536 }, Uid { 4294967295 }, Array(),
        Dictionary(), Array { Array { Array() } },
        Dictionary { { "", "" }, { "ключ 😀", Dictionary { { "k", Array { 1, 1.0, true } } } } } };
    EXPECT_EQ(writtenAndRead(values), Value(values));
    for (const Value& value : values)
        EXPECT_EQ(writtenAndRead(value), value);
}

TEST(PropertyListWrite, RealsKeepEveryBit)
{
    for (const std::uint64_t bits :
        { std::uint64_t { 1 } << 63, std::uint64_t { 1 }, std::uint64_t { 0x7FF8000000000123 },
            std::uint64_t { 0xFFF8000000000000 }, std::uint64_t { 0x7FEFFFFFFFFFFFFF } })
        EXPECT_EQ(std::bit_cast<std::uint64_t>(writtenAndRead(std::bit_cast<double>(bits))->real()), bits);
}

TEST(PropertyListWrite, DatesKeepEveryBit)
{
    for (const double seconds : { -0.0, 1e-9, 3e9 + 1e-6, std::numeric_limits<double>::infinity() })
        EXPECT_EQ(std::bit_cast<std::uint64_t>(writtenAndRead(Date { seconds })->date().secondsSinceReferenceDate),
            std::bit_cast<std::uint64_t>(seconds));
}

TEST(PropertyListWrite, NullsAreRefused)
{
    const std::string expected = "Property list invalid for format: 200 (property lists cannot contain NULL)";
    EXPECT_EQ(errorOf({}), expected);
    EXPECT_EQ(errorOf(Array { 1, Value() }), expected);
    EXPECT_EQ(errorOf(Dictionary { { "a", Dictionary { { "b", nullptr } } } }), expected);
}

TEST(PropertyListWrite, ObjectsAreRefusedByTheNameOfTheirClass)
{
    EXPECT_EQ(errorOf(std::make_shared<NSObject>()),
        "Property list invalid for format: 200 (property lists cannot contain objects of type 'NSObject')");
    EXPECT_EQ(errorOf(Dictionary { { "iconImage", std::make_shared<Logo>() } }),
        "Property list invalid for format: 200 (property lists cannot contain objects of type 'Logo')");
}

TEST(PropertyListWrite, ClassesAreRefused)
{
    EXPECT_EQ(errorOf(Dictionary { { "cellClass", &Logo::classObject() } }),
        "Property list invalid for format: 200 (property lists cannot contain objects of type 'Class')");
}

TEST(PropertyListWrite, ContainersNestToFiveHundredAndTwelve)
{
    EXPECT_EQ(writtenAndRead(nestedArrays(512)), nestedArrays(512));
    EXPECT_EQ(errorOf(nestedArrays(513)),
        "Property list invalid for format: 200 (property lists cannot contain containers nested deeper than 512)");
}

TEST(PropertyListWrite, AsManyValuesAreWrittenAsCanBeRead)
{
    Array values;
    for (int i = 0; i < 99'999; ++i)
        values.emplace_back(i);
    EXPECT_EQ(writtenAndRead(values), Value(values));
    values.emplace_back(true);
    const std::string expected =
        "Property list invalid for format: 200 (property lists cannot contain more than 100000 values)";
    EXPECT_EQ(errorOf(values), expected);

    Value unfolding = true;
    for (int i = 0; i < 100; ++i)
        unfolding = Array { unfolding, unfolding };
    EXPECT_EQ(errorOf(unfolding), expected);
}

TEST(PropertyListWrite, NoMoreBytesAreWrittenThanCanBeRead)
{
    constexpr std::size_t most = 268'435'456;
    const std::string expected =
        "Property list invalid for format: 200 (property lists cannot contain more than 268435456 bytes)";
    EXPECT_EQ(errorOf(Bytes(most + 1, 0)), expected);
    EXPECT_EQ(errorOf(std::string(most / 2, 'a') + "ä"), expected);
}

TEST(PropertyListWrite, WhatCouldNotBeReadAgainIsRefused)
{
    using namespace std::string_literals;
    const std::string prefix = "Property list invalid for format: 200 (property lists cannot contain ";
    EXPECT_EQ(errorOf(Uid { 4294967296 }), prefix + "UIDs above 4294967295)");
    EXPECT_EQ(errorOf(Dictionary { { "a\0b"s, true } }), prefix + "keys with a NUL character)");
    EXPECT_EQ(errorOf(Dictionary { { "\xFF", true } }), prefix + "texts that are no UTF-8)");
    for (const std::string& text : { "\xE4"s, "a\xC3"s, "\xED\xA0\x80"s, "\xF8\x88\x80\x80\x80"s })
        EXPECT_EQ(errorOf(text), prefix + "texts that are no UTF-8)");
}

TEST(PropertyListWrite, TextsThatDifferAfterANulAreKeptApartOrRefused)
{
    using namespace std::string_literals;
    int kept = 0;
    for (char last = 'a'; last <= 'z'; ++last) {
        const Value value = Array { "same\0"s + last, "same", "same\0"s + last };
        std::string error;
        const auto bytes = LibplistPropertyLists().writeBinary(value, error);
        if (!bytes) {
            EXPECT_EQ(error,
                "Property list invalid for format: 200 (property lists cannot contain texts that differ only after a "
                "NUL character)");
            continue;
        }
        ++kept;
        EXPECT_EQ(LibplistPropertyLists().read(*bytes), value);
    }
    EXPECT_GT(kept, 0);
}
