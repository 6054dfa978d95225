#include "Storage/StoredPropertyLists.h"

#include "Runtime/NSObject.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace {

class Logo final : public NSObject {
    NS_CLASS(Logo, NSObject)
};

/// What is read from what was written.
std::optional<Value> writtenAndRead(const Value& value)
{
    std::string error;
    const auto bytes = StoredPropertyLists().writeBinary(value, error);
    EXPECT_EQ(error, "");
    return bytes ? StoredPropertyLists().read(*bytes) : std::nullopt;
}

Bytes bytesOf(const Value& value)
{
    std::string error;
    return StoredPropertyLists().writeBinary(value, error).value_or(Bytes());
}

std::string errorOf(const Value& value)
{
    std::string error;
    EXPECT_EQ(StoredPropertyLists().writeBinary(value, error), std::nullopt);
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
    EXPECT_EQ(StoredPropertyLists().writeBinary(Dictionary { { "a", true } }, error), expected);
}

TEST(PropertyListWrite, EveryValueComesBack)
{
    using namespace std::string_literals;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Array values { true, false, 0, 1, -1, 255, 256, 65536, 16777216, 4294967296,
        std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(), 9223372036854775808UL,
        18446744073709551611UL, -5, 18446744073709551615UL, 0.0, 0.1, 1.5, -1e300, infinity, -infinity, Date { 0 },
        Date { -0.5 }, Date { 1e12 + 0.25 }, Date { -1e11 }, "", "text", "ä 電 😀", "a\0b"s, "\0"s, "ä\0"s, Bytes(),
        Bytes { 0, 1, 2 }, Bytes(1000, 0xFF), Uid { 0 }, Uid { 255 }, Uid { 65536 }, Uid { 4294967296 },
        Uid { ~std::uint64_t { 0 } }, Array(), Dictionary(), Array { Array { Array() } },
        Dictionary {
            { "", "" }, { "a\0"s, 1 }, { "a", 2 }, { "ключ 😀", Dictionary { { "k", Array { 1, 1.0, true } } } } } };
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

TEST(PropertyListWrite, ContainersNestToFiveHundredAndTwelveWhereverTheyAreSharedFrom)
{
    const Value shared = nestedArrays(300);
    Value deeper = shared;
    for (int i = 0; i < 212; ++i)
        deeper = Array { deeper };
    EXPECT_EQ(writtenAndRead(deeper), deeper);
    EXPECT_EQ(errorOf(Array { shared, deeper }),
        "Property list invalid for format: 200 (property lists cannot contain containers nested deeper than 512)");
}

TEST(PropertyListWrite, HundredsOfThousandsOfValuesComeBack)
{
    Array values;
    for (int i = 0; i < 500'000; ++i)
        values.emplace_back(i);
    EXPECT_EQ(writtenAndRead(values), Value(values));
}

TEST(PropertyListWrite, SharedContainersAreWrittenOnce)
{
    Value value = true;
    for (int i = 0; i < 200; ++i)
        value = Array { value, Dictionary { { "k", value } } };
    EXPECT_LT(bytesOf(value).size(), 3000);
    EXPECT_EQ(writtenAndRead(value), value);
}

TEST(PropertyListWrite, EqualScalarsAreWrittenOnce)
{
    const std::string text(100, 'x');
    for (const Value& value : { Value(1), Value(18446744073709551615UL), Value(0.5), Value(text), Value("ä"),
             Value(Bytes(100, 1)), Value(Date { 7 }), Value(Uid { 9 }), Value(false) }) {
        const std::size_t once = bytesOf(Array { value }).size();
        EXPECT_EQ(bytesOf(Array { value, value, value }).size(), once + 2);
    }
    EXPECT_EQ(bytesOf(Dictionary { { text, text } }).size(), bytesOf(Array { text, text }).size());
}

TEST(PropertyListWrite, ScalarsOfOneNumberAreKeptApart)
{
    const Array values { 1, 1.0, true, Date { 1 }, Uid { 1 }, "1", Bytes { '1' }, 0, 0.0, -0.0, false };
    const Value read = writtenAndRead(values).value_or(Value());
    EXPECT_EQ(read, Value(values));
    EXPECT_TRUE(std::signbit((*read.array())[9].real()));
}

TEST(PropertyListWrite, LargeTextsAndDataAreEncodedOnceHoweverOftenTheyStandInAValue)
{
    const Value text(std::string(5'000'000, 'x')), data(Bytes(5'000'000, 7));
    Array values(1'000'000, text);
    values.resize(2'000'000, data);
    EXPECT_EQ(writtenAndRead(values), Value(values));
}

TEST(PropertyListWrite, NoMoreBytesAreWrittenThanCanBeRead)
{
    constexpr std::size_t most = 16'777'216;
    const std::string expected =
        "Property list invalid for format: 200 (property lists cannot contain more than 16777216 bytes)";
    EXPECT_EQ(errorOf(Bytes(most + 1, 0)), expected);
    EXPECT_EQ(errorOf(std::string(most / 2, 'a') + "ä"), expected);
    EXPECT_EQ(errorOf(Dictionary { { std::string(most, 'k'), true } }), expected);
    EXPECT_EQ(errorOf(Array(most, true)), expected);
    const std::size_t besides = bytesOf(Bytes(100'000, 0)).size() - 100'000;
    EXPECT_EQ(bytesOf(Bytes(most - besides, 0)).size(), most);
    EXPECT_EQ(errorOf(Bytes(most - besides + 1, 0)), expected);
}

TEST(PropertyListWrite, WhatIsTooMuchInAllIsRefusedBeforeItIsWritten)
{
    Array values;
    for (std::uint8_t i = 0; i < 20; ++i)
        values.emplace_back(Bytes(1'000'000, i));
    EXPECT_EQ(errorOf(values),
        "Property list invalid for format: 200 (property lists cannot contain more than 16777216 bytes)");
}

TEST(PropertyListWrite, TextsThatAreNoUnicodeAreRefused)
{
    using namespace std::string_literals;
    const std::string expected =
        "Property list invalid for format: 200 (property lists cannot contain texts that are no UTF-8)";
    EXPECT_EQ(errorOf(Dictionary { { "\xFF", true } }), expected);
    for (const std::string& text : { "\xE4"s, "a\xC3"s, "\xED\xA0\x80"s, "\xF8\x88\x80\x80\x80"s })
        EXPECT_EQ(errorOf(text), expected);
}

TEST(PropertyListWrite, TextsThatDifferAfterANulAreKeptApart)
{
    using namespace std::string_literals;
    for (char last = 'a'; last <= 'z'; ++last) {
        const Value value = Array { "same\0"s + last, "same", "same\0"s + last, "same\0"s };
        EXPECT_EQ(writtenAndRead(value), value);
    }
}
