#include "Foundation/NSString.h"
#include "Foundation/Utf8.h"

#include <gtest/gtest.h>

namespace {

using Strings = std::vector<std::string>;

constexpr const char* replacement = "\xEF\xBF\xBD";

TEST(PathComponents, AreJoinedWithExactlyOneSeparator)
{
    EXPECT_EQ(stringByAppendingPathComponent("/var/mobile", "Library/Preferences"), "/var/mobile/Library/Preferences");
    for (const char* path : { "/a", "/a/", "/a//" }) {
        for (const char* component : { "b", "/b", "b/", "//b//" })
            EXPECT_EQ(stringByAppendingPathComponent(path, component), "/a/b") << path << " " << component;
    }
    EXPECT_EQ(stringByAppendingPathComponent("//a///b", "c//d"), "/a/b/c/d");
    EXPECT_EQ(stringByAppendingPathComponent("a", "b"), "a/b");
}

TEST(PathComponents, OfNothingAddNothing)
{
    EXPECT_EQ(stringByAppendingPathComponent("", ""), "");
    EXPECT_EQ(stringByAppendingPathComponent("", "b"), "b");
    EXPECT_EQ(stringByAppendingPathComponent("", "/b"), "/b");
    EXPECT_EQ(stringByAppendingPathComponent("/a/", ""), "/a");
    EXPECT_EQ(stringByAppendingPathComponent("/a", "/"), "/a");
    EXPECT_EQ(stringByAppendingPathComponent("/", ""), "/");
    EXPECT_EQ(stringByAppendingPathComponent("/", "/"), "/");
    EXPECT_EQ(stringByAppendingPathComponent("///", "b"), "/b");
}

TEST(PathComponents, AreNotResolved)
{
    EXPECT_EQ(stringByAppendingPathComponent("/a", "../b"), "/a/../b");
    EXPECT_EQ(stringByAppendingPathComponent("/a", "."), "/a/.");
}

TEST(PercentEscapes, LeaveUnreservedCharactersAlone)
{
    const std::string plain = "ABCXYZabcxyz0189-._~";
    EXPECT_EQ(stringByAddingPercentEscapes(plain), plain);
    EXPECT_EQ(stringByAddingPercentEscapes(""), "");
}

TEST(PercentEscapes, ReplaceEveryOtherByteOfTheText)
{
    EXPECT_EQ(stringByAddingPercentEscapes("a b&c=d/e?f#g%20"), "a%20b%26c%3Dd%2Fe%3Ff%23g%2520");
    EXPECT_EQ(stringByAddingPercentEscapes("Zürich 📱"), "Z%C3%BCrich%20%F0%9F%93%B1");
    EXPECT_EQ(stringByAddingPercentEscapes(std::string_view("\0\n\x7F\xFF", 4)), "%00%0A%7F%FF");
    EXPECT_EQ(stringByAddingPercentEscapes("'\"<>;"), "%27%22%3C%3E%3B");
}

TEST(Pieces, StandBetweenTheSeparators)
{
    EXPECT_EQ(componentsSeparatedByString("AA:BB+1234", '+'), (Strings { "AA:BB", "1234" }));
    EXPECT_EQ(componentsSeparatedByString("a+b+c", '+'), (Strings { "a", "b", "c" }));
    EXPECT_EQ(componentsSeparatedByString("none", '+'), Strings { "none" });
    EXPECT_EQ(componentsSeparatedByString("", '+'), Strings { "" });
    EXPECT_EQ(componentsSeparatedByString("+", '+'), (Strings { "", "" }));
    EXPECT_EQ(componentsSeparatedByString("++a", '+'), (Strings { "", "", "a" }));
    EXPECT_EQ(componentsSeparatedByString(std::string_view("a\0b", 3), '\0'), (Strings { "a", "b" }));
}

TEST(Utf16Lengths, CountTwoUnitsBeyondTheBasicPlane)
{
    EXPECT_EQ(utf16Length(""), 0U);
    EXPECT_EQ(utf16Length("SIM"), 3U);
    EXPECT_EQ(utf16Length("Zürich"), 6U);
    EXPECT_EQ(utf16Length("日本"), 2U);
    EXPECT_EQ(utf16Length("📱"), 2U);
    EXPECT_EQ(utf16Length("e\xCC\x81"), 2U);
    EXPECT_EQ(utf16Length(replacement), 1U);
    EXPECT_EQ(utf16Length(std::string_view("a\0b", 3)), 3U);
    EXPECT_EQ(utf16Length("👩‍👩‍👧"), 8U);
}

TEST(Utf16Lengths, CountOneUnitForAByteThatBelongsToNoCharacter)
{
    EXPECT_EQ(utf16Length("\x80\xFF"), 2U);
    EXPECT_EQ(utf16Length("\xF0\x9F\x93"), 3U);
    EXPECT_EQ(utf16Length("\xED\xA0\x80"), 3U);
}

TEST(TextOfBytes, IsTheSameWhereTheBytesAreUtf8)
{
    for (const std::string_view text :
        { std::string_view(""), std::string_view("plain"), std::string_view("Zürich 日本 📱"), std::string_view("\0", 1),
            std::string_view("\xC2\x80"), std::string_view("\xE0\xA0\x80"), std::string_view("\xED\x9F\xBF"),
            std::string_view("\xEE\x80\x80"), std::string_view("\xEF\xBF\xBF"), std::string_view("\xF0\x90\x80\x80"),
            std::string_view("\xF4\x8F\xBF\xBF") })
        EXPECT_EQ(stringFromUtf8(text), text);
}

TEST(TextOfBytes, HasAReplacementForEveryByteThatBelongsToNoCharacter)
{
    struct Broken {
        std::string_view bytes;
        std::size_t replaced;
    };
    const Broken cases[] = {
        { "\x80", 1 }, // a continuation alone
        { "\xBF\xBF", 2 }, // two
        { "\xC3", 1 }, // cut off after the first of two bytes
        { "\xE2\x82", 2 }, // after the second of three
        { "\xF0\x9F\x93", 3 }, // after the third of four
        { "\xC0\xAF", 2 }, // overlong in two
        { "\xC1\xBF", 2 }, // the longest of these
        { "\xE0\x9F\xBF", 3 }, // overlong in three
        { "\xF0\x8F\xBF\xBF", 4 }, // overlong in four
        { "\xED\xA0\x80", 3 }, // a surrogate
        { "\xED\xBF\xBF", 3 }, // the last of these
        { "\xF4\x90\x80\x80", 4 }, // beyond the last character
        { "\xF5\x80\x80\x80", 4 }, // a lead byte that there is not
        { "\xFE\xFF", 2 }, // a byte order mark of UTF-16
        { "\xFC\x80\x80\x80\x80\x80", 6 },
    };
    for (const Broken& broken : cases) {
        std::string expected = "<";
        for (std::size_t i = 0; i < broken.replaced; ++i)
            expected += replacement;
        expected += ">";
        EXPECT_EQ(stringFromUtf8("<" + std::string(broken.bytes) + ">"), expected);
        EXPECT_EQ(stringFromUtf8(broken.bytes), expected.substr(1, expected.size() - 2));
    }
}

TEST(TextOfBytes, TakesUpAgainAtTheFirstByteThatFits)
{
    EXPECT_EQ(stringFromUtf8("\xE2\x82"
                             "ä"),
        std::string(replacement) + replacement + "ä");
    EXPECT_EQ(stringFromUtf8("\xF0"
                             "a\x9F"),
        std::string(replacement) + "a" + replacement);
    EXPECT_EQ(stringFromUtf8("\xC3\xC3\xBC"), std::string(replacement) + "ü");
}

TEST(TextOfBytes, OfEveryPairOfBytesIsUtf8)
{
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text =
                stringFromUtf8(std::string { static_cast<char>(first), static_cast<char>(second) });
            EXPECT_EQ(stringFromUtf8(text), text) << first << " " << second;
        }
    }
}

TEST(Utf8, IsWhatHasOnlyWholeCharacters)
{
    using namespace std::string_literals;
    for (const std::string& text : { ""s, "a\0b"s, "ä電😀\x7F"s, "\xEF\xBF\xBF"s, "\xF4\x8F\xBF\xBF"s })
        EXPECT_TRUE(isUtf8(text)) << text;
    for (const std::string& text : { "\xE4"s, "a\xC3"s, "\x80"s, "\xC0\x80"s, "\xE0\x9F\xBF"s, "\xED\xA0\x80"s,
             "\xF4\x90\x80\x80"s, "\xF8\x88\x80\x80\x80"s, "\xFF"s })
        EXPECT_FALSE(isUtf8(text)) << text;
}

TEST(Utf8, OfEveryCharacterReadsAsTheCharacter)
{
    for (char32_t point = 0; point <= 0x10FFFF; ++point) {
        if (point == 0xD800)
            point = 0xE000;
        std::string text;
        appendUtf8(text, point);
        const Utf8Character read = firstCharacter(text);
        ASSERT_TRUE(read.valid && read.codePoint == point && read.length == text.size()) << std::uint32_t { point };
    }
}

} // namespace
