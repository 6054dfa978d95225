#include "TemporaryDirectory.h"

#include "Storage/StoredPropertyLists.h"

#include <gtest/gtest.h>

#include <bit>

namespace {

using namespace std::string_literals;

std::optional<Value> read(std::string_view text)
{
    return StoredPropertyLists().read(bytesOf(text));
}

/// The table in UTF-16, with a byte order mark.
std::string utf16(std::u16string text, std::endian order)
{
    text.insert(text.begin(), u'\uFEFF');
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
        bytes += order == std::endian::big ? high : low;
        bytes += order == std::endian::big ? low : high;
    }
    return bytes;
}

/// What stands for the text of an entry.
std::optional<Value> readText(std::string_view text)
{
    const auto table = read("key = " + std::string(text) + ";");
    return table ? std::optional((*table)["key"]) : std::nullopt;
}

} // namespace

TEST(StringTable, EntriesAreRead)
{
    EXPECT_EQ(read("/* Title of the page. */\n\"Calls\" = \"Anrufe\";\n\n\"SIM %@\"=\"%@-SIM\" ;\n"),
        Value(Dictionary { { "Calls", "Anrufe" }, { "SIM %@", "%@-SIM" } }));
    EXPECT_EQ(read("a=b;c=d;"), Value(Dictionary { { "a", "b" }, { "c", "d" } }));
    EXPECT_EQ(read("\"\" = \"\";"), Value(Dictionary { { "", "" } }));
}

TEST(StringTable, CommentsMayStandBetweenAllParts)
{
    EXPECT_EQ(
        read("// one\r\n/**/'a'/* \"=\" */=/*/ ; /*/'b'// ;\n;// at the end"), Value(Dictionary { { "a", "b" } }));
    EXPECT_EQ(read("\"/* a */\" = \"// b\";"), Value(Dictionary { { "/* a */", "// b" } }));
    EXPECT_EQ(read("/* nothing yet */\n"), Value(Dictionary()));
}

TEST(StringTable, WordsNeedNoQuotes)
{
    EXPECT_EQ(read("a//b=/*;"), std::nullopt);
    EXPECT_EQ(read("a//b = c/;"), Value(Dictionary { { "a//b", "c/" } }));
    EXPECT_EQ(read("com.vexil.tandem/a_b-c:$9 = /usr/share;"),
        Value(Dictionary { { "com.vexil.tandem/a_b-c:$9", "/usr/share" } }));
    EXPECT_EQ(read("'a \"b\"' = 'it\\'s';"), Value(Dictionary { { "a \"b\"", "it's" } }));
    for (const char* none : { "a b", "ä", "a,b", "*", "", "(a)", "{}", "<00>" })
        EXPECT_EQ(readText(none), std::nullopt) << none;
}

TEST(StringTable, EscapesAreResolved)
{
    EXPECT_EQ(readText(R"("\n\t\"\\\'\r\a\b\f\v")"), Value("\n\t\"\\'\r\a\b\f\v"));
    EXPECT_EQ(readText("\"a\\\nb\\ä\\?\""), Value("a\nbä?"));
    EXPECT_EQ(readText(R"("\U00e9\U00C9\Ue9!\U96fbf")"), Value("éÉé!電f"));
    EXPECT_EQ(readText(R"("\101\12\0\0078\377")"), Value("A\n\0\a8ÿ"s));
    EXPECT_EQ(read(R"("\U0000k" = "\U0000";)"), Value(Dictionary { { "\0k"s, "\0"s } }));
}

TEST(StringTable, SurrogatePairsAreOneCharacter)
{
    EXPECT_EQ(readText(R"("SIM \Ud83d\Ude00\U00e9")"), Value("SIM 😀é"));
    for (const char* none : { R"("\Ud83d")", R"("\Ud83da")", R"("\Ud83d\n")", R"("\Ude00")", R"("\Ud83d\Ud83d\Ude00")",
             R"("\Ud83d)", R"("a\Ud83d" = "\Ude00")" })
        EXPECT_EQ(readText(none), std::nullopt) << none;
}

TEST(StringTable, EscapesThatAreCutOffMakeNoTable)
{
    for (const char* none : { R"("\)", R"("\")", R"("\U")", R"("\Ug")", R"("\U-1")", R"("\U+1")" })
        EXPECT_EQ(readText(none), std::nullopt) << none;
}

TEST(StringTable, KeyThatStandsTwiceHasItsLastText)
{
    EXPECT_EQ(read("a = b; \"a\" = c;"), Value(Dictionary { { "a", "c" } }));
}

TEST(StringTable, EncodingsAreToldByTheByteOrderMark)
{
    const Value expected = Dictionary { { "ä", "電 😀" } };
    EXPECT_EQ(read("\"ä\" = \"電 😀\";"), expected);
    EXPECT_EQ(read("\xEF\xBB\xBF\"ä\" = \"電 😀\";"), expected);
    EXPECT_EQ(read(utf16(u"\"ä\" = \"電 😀\";", std::endian::big)), expected);
    EXPECT_EQ(read(utf16(u"/* < */\n\"ä\" = \"電 😀\";", std::endian::little)), expected);
}

TEST(StringTable, TextThatIsNoUnicodeMakesNoTable)
{
    for (const std::string& none : { "\"\xE4\""s, "\"a\" = \"\xC3\";"s, "\"\xED\xA0\x80\" = b;"s })
        EXPECT_EQ(read(none), std::nullopt);
    EXPECT_EQ(read(utf16(u"a = \"\xD83D\";", std::endian::big)), std::nullopt);
    EXPECT_EQ(read(utf16(u"a = b;", std::endian::big) + "\n"), std::nullopt);
}

TEST(StringTable, IncompleteEntriesMakeNoTable)
{
    for (const char* none : { "a", "a =", "a = b", "a b;", "= b;", "a = ;", "a == b;", "a = b;;", "a = \"b;",
             "\"a = b;", "a = b; c", "/* a = b;", "a = b; /*", "a = b; /*/", "a / = b;", "a = { b = c; };", "a = (b);",
             "{ a = b; }", "a = <00>;", "a;" })
        EXPECT_EQ(read(none), std::nullopt) << none;
}

TEST(StringTable, CutOffWithinAnEntryMakesNoTable)
{
    const std::string table = "\"key\" = \"a\\n\\U00e9 ä\"; /* c */ word = 'b';";
    const std::size_t firstEnd = table.find(';') + 1, nextBegin = table.find("word");
    ASSERT_TRUE(read(table));
    for (std::size_t length = 0; length < table.size(); ++length) {
        const bool isBetween =
            length == firstEnd || length == firstEnd + 1 || (length + 1 >= nextBegin && length <= nextBegin);
        EXPECT_EQ(read(table.substr(0, length)).has_value(), isBetween) << length;
    }
}

TEST(StringTable, FifteenMegabytesAreRead)
{
    constexpr std::size_t size = 15'000'000;
    EXPECT_EQ(readText('"' + std::string(size, 'x') + '"')->string()->size(), size);
    std::string escapes, entries;
    for (std::size_t i = 0; i < size / 6; ++i)
        escapes += "\\U00e9";
    EXPECT_EQ(readText('"' + escapes + '"')->string()->size(), size / 3);
    for (int i = 0; i < 600'000; ++i)
        entries += std::to_string(i) + " = \"text\";";
    EXPECT_EQ(read(entries)->dictionary()->size(), 600'000);
    EXPECT_EQ(read(std::string(size, '"')), std::nullopt);
    EXPECT_EQ(read(std::string(size, '/')), Value(Dictionary()));
}
