#include "Foundation/NSError.h"
#include "Foundation/NSString.h"
#include "Platform/GermanNumbers.h"
#include "Runtime/NSObject.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr unsigned long above = 18446744073709551611UL;

class Speaker final : public NSObject {
    NS_CLASS(Speaker, NSObject)
public:
    std::string description() const override { return "says \"hello\"\n\xF0\x9F\x91\x8B"; }
};

NS_IMPLEMENTATION(Speaker)

TEST(Formats, FillPlaceholdersInOrder)
{
    EXPECT_EQ(stringWithFormat("%@+%@", { "AA:BB", "SIM" }), "AA:BB+SIM");
    EXPECT_EQ(stringWithFormat("Version %@ © %ld", { "1.0", 2026 }), "Version 1.0 © 2026");
    EXPECT_EQ(stringWithFormat("%ld%lu%d%@", { 1, 2, 3, 4 }), "1234");
    EXPECT_EQ(stringWithFormat("", { 1 }), "");
    EXPECT_EQ(stringWithFormat("nothing to fill", {}), "nothing to fill");
}

TEST(Formats, ArgumentsTooManyAreLeftOut)
{
    EXPECT_EQ(stringWithFormat("%@", { 1, 2, 3 }), "1");
}

TEST(Formats, MissingArgumentsPrintAsNull)
{
    EXPECT_EQ(stringWithFormat("%@ %@ %ld", { "one" }), "one (null) (null)");
    EXPECT_EQ(stringWithFormat("%@%@%@%@%@%@", {}), "(null)(null)(null)(null)(null)(null)");
}

TEST(Formats, DoubledPercentSignIsOneAndTakesNoArgument)
{
    EXPECT_EQ(stringWithFormat("%%", {}), "%");
    EXPECT_EQ(stringWithFormat("100%% %@", { "sure" }), "100% sure");
    EXPECT_EQ(stringWithFormat("%%@", { 1 }), "%@");
    EXPECT_EQ(stringWithFormat("%%%@%%%%", { 1 }), "%1%%");
    EXPECT_EQ(stringWithFormat("%%ld", { 1 }), "%ld");
}

TEST(Formats, PercentSignBeforeAnythingElseStandsAsItIs)
{
    for (const char* format : { "%", "50 %", "%s", "%n", "%x", "%5d", "%-@", "%l", "%.3f", "% @", "%ÿ", "%*d", "%hhn",
             "%1$", "%1$x", "%1$%", "%0$@", "%$@", "%-1$@", "%+1$@", "% 1$@", "%1", "%1@", "%1$1$@", "%1$ @" })
        EXPECT_EQ(stringWithFormat(format, { "argument" }), format);
    EXPECT_EQ(stringWithFormat(std::string_view("%\0@", 3), { 1 }), std::string("%\0@", 3));
}

TEST(Formats, PositionsChooseTheArgument)
{
    EXPECT_EQ(stringWithFormat("%2$@ before %1$@", { "a", "b" }), "b before a");
    EXPECT_EQ(stringWithFormat("%1$@%1$@%1$@", { "a" }), "aaa");
    EXPECT_EQ(stringWithFormat("%2$ld %1$ld %3$lu %4$d", { 1.9, 2, "3 rows", true }), "2 1 3 1");
    EXPECT_EQ(stringWithFormat("%10$@", { 1, 2, 3, 4, 5, 6, 7, 8, 9, "ten" }), "ten");
    EXPECT_EQ(stringWithFormat("%01$@", { "a" }), "a");
    EXPECT_EQ(stringWithFormat("100%% %1$@%%", { "sure" }), "100% sure%");
}

TEST(Formats, PositionsLeaveTheOrderOfTheOtherPlaceholders)
{
    EXPECT_EQ(stringWithFormat("%@ %1$@ %@ %3$ld %@", { "a", "b", 3 }), "a a b 3 3");
    EXPECT_EQ(stringWithFormat("%2$@ %@", { "a", "b" }), "b a");
}

TEST(Formats, PositionsWithoutAnArgumentPrintAsNull)
{
    EXPECT_EQ(stringWithFormat("%2$@ %3$ld", { "a" }), "(null) (null)");
    EXPECT_EQ(stringWithFormat("%1$@", {}), "(null)");
    for (const char* format : { "%4294967297$@", "%18446744073709551617$@", "%99999999999999999999999999$ld" })
        EXPECT_EQ(stringWithFormat(format, { "a" }), "(null)") << format;
}

TEST(Formats, PlaceholdersInAnArgumentAreNotFilledAgain)
{
    EXPECT_EQ(stringWithFormat("%@ %@", { "%@ %ld %%", "%n" }), "%@ %ld %% %n");
}

TEST(Formats, IntegerPlaceholdersPrintTheIntegerReading)
{
    EXPECT_EQ(stringWithFormat("%ld %d %lu", { 2.9, true, "42 rows" }), "2 1 42");
    EXPECT_EQ(stringWithFormat("%ld %ld %ld", { Value(), Array { 1 }, "none" }), "0 0 0");
    EXPECT_EQ(stringWithFormat("%ld", { std::numeric_limits<std::int64_t>::min() }), "-9223372036854775808");
}

TEST(Formats, IntegerPlaceholdersPrintIntegersAboveTheLargestSignedOneWhole)
{
    EXPECT_EQ(stringWithFormat("%lu %ld %@", { above, above, above }),
        "18446744073709551611 18446744073709551611 18446744073709551611");
}

TEST(Descriptions, OfPlainValues)
{
    const std::pair<Value, const char*> cases[] = {
        { Value(), "(null)" },
        { true, "1" },
        { false, "0" },
        { -5, "-5" },
        { 2.5, "2.5" },
        { 3.0, "3" },
        { 0.1, "0.1" },
        { -0.0, "-0" },
        { 1e300, "1e+300" },
        { 1.0 / 3, "0.3333333333333333" },
        { std::numeric_limits<double>::infinity(), "inf" },
        { -std::numeric_limits<double>::infinity(), "-inf" },
        { "", "" },
        { "two words \"quoted\"\n", "two words \"quoted\"\n" },
        { Uid { 7 }, "{value = 7}" },
        { &Speaker::classObject(), "Speaker" },
        { std::make_shared<Speaker>(), "says \"hello\"\n\xF0\x9F\x91\x8B" },
        { std::make_shared<NSError>("Domain", 3, "No reason."), "Error Domain=Domain Code=3 \"No reason.\"" },
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(descriptionOf(value), text);
}

TEST(Descriptions, OfRealsHaveADecimalPointWhateverTheLocale)
{
    const GermanNumbers locale;
    if (!locale.isSet())
        GTEST_SKIP() << "no locale with a decimal comma";
    EXPECT_EQ(descriptionOf(2.5), "2.5");
    EXPECT_EQ(descriptionOf(Array { 2.5 }), "(\n    \"2.5\"\n)");
}

TEST(Descriptions, OfDataHaveTheLengthAndTheBytesOrTheirEnds)
{
    Bytes bytes;
    EXPECT_EQ(descriptionOf(bytes), "{length = 0, bytes = 0x}");
    for (int i = 0; i < 24; ++i)
        bytes.push_back(static_cast<std::uint8_t>(i * 16));
    EXPECT_EQ(descriptionOf(bytes), "{length = 24, bytes = 0x00102030405060708090a0b0c0d0e0f00010203040506070}");
    bytes.push_back(0xFF);
    EXPECT_EQ(
        descriptionOf(bytes), "{length = 25, bytes = 0x00102030 40506070 8090a0b0 c0d0e0f0 ... 10203040 506070ff}");
}

TEST(Descriptions, OfDatesAreInUniversalTime)
{
    EXPECT_EQ(descriptionOf(Date {}), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(descriptionOf(Date { 1.75 }), "2001-01-01 00:00:01 +0000");
    EXPECT_EQ(descriptionOf(Date { -0.25 }), "2000-12-31 23:59:59 +0000");
    EXPECT_EQ(descriptionOf(Date { -63113904000 }), "0001-01-01 00:00:00 +0000");
}

TEST(Descriptions, OfDatesBeyondTheCalendarAreTheirSeconds)
{
    EXPECT_EQ(descriptionOf(Date { 1e300 }), "1e+300");
    EXPECT_EQ(descriptionOf(Date { -std::numeric_limits<double>::infinity() }), "-inf");
    EXPECT_EQ(descriptionOf(Date { std::numeric_limits<double>::quiet_NaN() }), "nan");
}

TEST(Descriptions, OfEmptyContainers)
{
    EXPECT_EQ(descriptionOf(Array {}), "(\n)");
    EXPECT_EQ(descriptionOf(Dictionary {}), "{\n}");
}

TEST(Descriptions, OfNestedContainersAreIndentedWithTheKeysInAscendingOrder)
{
    const Value value = Dictionary {
        { "zeta", 1 },
        { "alpha", Array { "one", Dictionary { { "inner", true } }, Array {}, nullptr } },
        { "Beta", Dictionary { { "b", 2 }, { "a", Dictionary {} } } },
    };
    EXPECT_EQ(descriptionOf(value), R"text({
    Beta =     {
        a =         {
        };
        b = 2;
    };
    alpha =     (
        one,
                {
            inner = 1;
        },
                (
        ),
        "(null)"
    );
    zeta = 1;
})text");
}

TEST(Descriptions, InsideContainersQuoteAllButAsciiLettersAndDigits)
{
    const Value value = Array { "plain", "Plain1", "", "two words", "a_b", "a.b", "-5", -5, 5, 2.5, 3.0, true,
        "say \"hi\"", "back\\slash", Bytes { 0xAB }, Date {} };
    EXPECT_EQ(descriptionOf(value), R"text((
    plain,
    Plain1,
    "",
    "two words",
    "a_b",
    "a.b",
    "-5",
    "-5",
    5,
    "2.5",
    3,
    1,
    "say \"hi\"",
    "back\\slash",
    "{length = 1, bytes = 0xab}",
    "2001-01-01 00:00:00 +0000"
))text");
}

TEST(Descriptions, InsideContainersEscapeWhatIsNotAscii)
{
    EXPECT_EQ(descriptionOf(Array { "Zürich", "日本", "\xF0\x9F\x93\xB1", "\xEF\xBF\xBF" }), R"text((
    "Z\U00fcrich",
    "\U65e5\U672c",
    "\Ud83d\Udcf1",
    "\Uffff"
))text");
}

TEST(Descriptions, InsideContainersEscapeControlCharactersSoThatALineStaysALine)
{
    EXPECT_EQ(descriptionOf(Dictionary { { "a\nb", std::string("\a\b\t\n\v\f\r\x1B[31m\x7F\0", 14) } }),
        "{\n    \"a\\nb\" = \"\\a\\b\\t\\n\\v\\f\\r\\033[31m\\177\\000\";\n}");
}

TEST(Descriptions, InsideContainersPrintBytesThatAreNoTextByTheirNumbers)
{
    EXPECT_EQ(descriptionOf(Array { "a\xFF\xC3" }), "(\n    \"a\\U00ff\\U00c3\"\n)");
}

TEST(Descriptions, InsideContainersLeaveObjectsAsTheySayThemselves)
{
    EXPECT_EQ(descriptionOf(Array { std::make_shared<Speaker>(), &Speaker::classObject() }),
        "(\n    says \"hello\"\n\xF0\x9F\x91\x8B,\n    Speaker\n)");
}

TEST(Descriptions, OfADeepValueAreWhole)
{
    Value value = "core";
    for (int i = 0; i < 512; ++i)
        value = Array { value };
    const std::string text = descriptionOf(value);
    EXPECT_EQ(std::count(text.begin(), text.end(), '('), 512);
    EXPECT_EQ(std::count(text.begin(), text.end(), ')'), 512);
    EXPECT_NE(text.find("core"), std::string::npos);
}

TEST(Descriptions, ThatUnfoldWithoutEndAreCut)
{
    constexpr std::size_t mebibyte = std::size_t { 1 } << 20;
    Value value = "core";
    for (int i = 0; i < 200; ++i)
        value = Array { value, Dictionary { { "k", value } } };
    const std::string unfolding = descriptionOf(value);
    EXPECT_GT(unfolding.size(), 4 * mebibyte);
    EXPECT_LT(unfolding.size(), 5 * mebibyte);
    EXPECT_NE(unfolding.find("..."), std::string::npos);

    const Value text(std::string(mebibyte, 'x'));
    const std::string texts = descriptionOf(Array(100'000, text));
    EXPECT_LT(texts.size(), 6 * mebibyte);
    EXPECT_TRUE(texts.ends_with(",\n    ...\n)"));
}
} // namespace
