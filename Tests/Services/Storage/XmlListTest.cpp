#include "TemporaryDirectory.h"

#include "Storage/LibplistPropertyLists.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr std::size_t fiftyMegabytes = 50'000'000;

std::optional<Value> read(std::string_view text)
{
    return LibplistPropertyLists().read(bytesOf(text));
}

/// What the element stands for as the root of a list.
std::optional<Value> readElement(std::string_view element)
{
    return read(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n"
        + std::string(element) + "\n</plist>\n");
}

std::string repeated(std::string_view text, std::size_t times)
{
    std::string result(text);
    while (result.size() < text.size() * times)
        result += result;
    result.resize(text.size() * times);
    return result;
}

/// A text of its own for each number; libplist keeps them all in one slot of its hash table.
std::string collidingKey(std::size_t number)
{
    constexpr unsigned factor = 33, slots = 4096;
    const std::string key = std::to_string(number);
    unsigned hash = 5381;
    for (const char c : key)
        hash = hash * factor + static_cast<unsigned>(c);
    for (char a = 'A'; a <= 'Z'; ++a) {
        for (char b = 'A'; b <= 'Z'; ++b) {
            for (char c = 'A'; c <= 'Z'; ++c) {
                const unsigned whole =
                    ((hash * factor + static_cast<unsigned>(a)) * factor + static_cast<unsigned>(b)) * factor
                    + static_cast<unsigned>(c);
                if (whole % slots == 0)
                    return key + a + b + c;
            }
        }
    }
    return key;
}

} // namespace

TEST(XmlList, EveryKindOfElementIsRead)
{
    const auto value = readElement(R"(<dict>
        <key>yes</key><true/>
        <key>no</key><false></false>
        <key>integer</key><integer> -42 </integer>
        <key>real</key><real>2.5</real>
        <key>text</key><string>two words</string>
        <key>data</key><data>
            AAH/
            fg==
        </data>
        <key>date</key><date>2024-02-29T12:30:45Z</date>
        <key>array</key><array><string>a</string><array/><dict></dict></array>
        <key>empty</key><string/>
        <key></key><data></data>
    </dict>)");
    EXPECT_EQ(value,
        Value(Dictionary { { "yes", true }, { "no", false }, { "integer", -42 }, { "real", 2.5 },
            { "text", "two words" }, { "data", Bytes { 0, 1, 0xFF, 0x7E } }, { "date", Date { 730902645 } },
            { "array", Array { "a", Array(), Dictionary() } }, { "empty", "" }, { "", Bytes() } }));
}

TEST(XmlList, RootMayStandWithoutPlistElement)
{
    EXPECT_EQ(read("<dict><key>a</key><integer>1</integer></dict>"), Value(Dictionary { { "a", 1 } }));
    EXPECT_EQ(read("\n<array/>\n"), Value(Array()));
}

TEST(XmlList, ByteOrderMarkCommentsAndInstructionsAreSkipped)
{
    EXPECT_EQ(read("\xEF\xBB\xBF<?xml version='1.0'?><!-- <dict> --><!DOCTYPE plist SYSTEM 'a>b'><plist><?pi "
                   "<array>?><!----><array>"
                   "<!-- one --><true/><!-- two --></array><!-- three --></plist><!-- four -->\n"),
        Value(Array { true }));
}

TEST(XmlList, IntegersAreReadToTheLimitsAndNoFurther)
{
    EXPECT_EQ(readElement("<integer>9223372036854775807</integer>"), Value(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(readElement("<integer>9223372036854775808</integer>"), Value(9223372036854775808UL));
    EXPECT_EQ(readElement("<integer>18446744073709551615</integer>"), Value(18446744073709551615UL));
    EXPECT_EQ(readElement("<integer>18446744073709551616</integer>"), std::nullopt);
    EXPECT_EQ(readElement("<integer>-9223372036854775808</integer>"), Value(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(readElement("<integer>-9223372036854775809</integer>"), std::nullopt);
    EXPECT_EQ(readElement("<integer>+010</integer>"), Value(10));
    EXPECT_EQ(readElement("<integer>-0x1F</integer>"), Value(-31));
    for (const char* none : { "", "-", "0x", "1.5", "1 2", "--1", "+-1", "&#49;", "<!-- -->1", "ten" })
        EXPECT_EQ(readElement("<integer>" + std::string(none) + "</integer>"), std::nullopt) << none;
    EXPECT_EQ(readElement("<integer/>"), std::nullopt);
}

TEST(XmlList, RealsAreReadExactly)
{
    for (const double real :
        { 0.1, 1e22, 1.7976931348623157e308, 4.9406564584124654e-324, 2.2250738585072014e-308, 1 / 3.0, -7.25, 0.0 }) {
        char text[64];
        std::snprintf(text, sizeof text, "<real>%.17g</real>", real);
        EXPECT_EQ(readElement(text), Value(real)) << text;
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(readElement("<real>+infinity</real>"), Value(infinity));
    EXPECT_EQ(readElement("<real>-inf</real>"), Value(-infinity));
    EXPECT_TRUE(std::isnan(readElement("<real>nan</real>")->real()));
    EXPECT_TRUE(std::signbit(readElement("<real>-0.0</real>")->real()));
    EXPECT_EQ(readElement("<real>12</real>"), Value(12.0));
    for (const char* none : { "", "1,5", "1.5x", "-", "--1", "0x1p3" })
        EXPECT_EQ(readElement("<real>" + std::string(none) + "</real>"), std::nullopt) << none;
}

TEST(XmlList, DatesOfAllYearsAreRead)
{
    EXPECT_EQ(readElement("<date>2001-01-01T00:00:00Z</date>"), Value(Date { 0 }));
    EXPECT_EQ(readElement("<date>1900-02-28T23:59:59Z</date>"), Value(Date { -3182198401 }));
    EXPECT_EQ(readElement("<date>\n0001-01-01T00:00:00Z\n</date>"), Value(Date { -63113904000 }));
    EXPECT_EQ(readElement("<date>9999-12-31T23:59:59Z</date>"), Value(Date { 252423993599 }));
    for (const char* none : { "", "2024-02-30T00:00:00Z", "2024-13-01T00:00:00Z", "2024-01-01T24:00:00Z",
             "2024-01-01T00:60:00Z", "2024-01-01T00:00:60Z", "2024-01-01", "2024-01-01T00:00:00",
             "2024-01-01 00:00:00Z", "2024-+1-01T00:00:00Z" })
        EXPECT_EQ(readElement("<date>" + std::string(none) + "</date>"), std::nullopt) << none;
}

TEST(XmlList, DataMustBeWholeGroups)
{
    EXPECT_EQ(readElement("<data>AQ==</data>"), Value(Bytes { 1 }));
    EXPECT_EQ(readElement("<data>AQI=</data>"), Value(Bytes { 1, 2 }));
    for (const char* none : { "A", "AQ", "AQI", "A===", "AQ=I", "AQ==AQ==", "AQ!=", "=AQI" })
        EXPECT_EQ(readElement("<data>" + std::string(none) + "</data>"), std::nullopt) << none;
}

TEST(XmlList, EntitiesAndCdataAreResolved)
{
    EXPECT_EQ(readElement("<string>&lt;a&gt; &amp;amp; &quot;&apos; &#228;&#x1F600;&#x41;</string>"),
        Value("<a> &amp; \"' ä😀A"));
    EXPECT_EQ(readElement("<string> a<![CDATA[<b>&amp;]]><!-- c -->d </string>"), Value(" a<b>&amp;d "));
    EXPECT_EQ(readElement("<string>a]]&gt;b]]]]&gt;</string>"), Value("a]]>b]]]]>"));
    EXPECT_EQ(readElement("<dict><key>&amp;<![CDATA[<]]></key><true/></dict>"), Value(Dictionary { { "&<", true } }));
    for (const char* none :
        { "&", "&;", "&amp", "a&", "&ampx;", "&nbsp;", "&#0;", "&#xD800;", "&#x110000;", "&#;", "&#x;", "&#-1;" })
        EXPECT_EQ(readElement("<string>" + std::string(none) + "</string>"), std::nullopt) << none;
}

TEST(XmlList, DeclaredEntitiesMakeNoList)
{
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY a 'b'>]><plist><string>a</string></plist>"), std::nullopt);
}

TEST(XmlList, TextThatIsNoUtf8MakesNoList)
{
    using namespace std::string_literals;
    for (const std::string& none : { "\xE4"s, "\xC0\x80"s, "\xED\xA0\x80"s, "\xF4\x90\x80\x80"s, "\xE2\x82"s, "a\0b"s })
        EXPECT_EQ(readElement("<string>" + none + "</string>"), std::nullopt);
}

TEST(XmlList, UidDictionaryIsAUid)
{
    EXPECT_EQ(
        readElement("<array><dict><key>CF$UID</key><integer>5</integer></dict></array>"), Value(Array { Uid { 5 } }));
    EXPECT_EQ(
        readElement("<dict><key>CF$UID</key><integer>-1</integer></dict>"), Value(Dictionary { { "CF$UID", -1 } }));
    EXPECT_EQ(readElement("<dict><key>CF$UID</key><string>5</string></dict>"), Value(Dictionary { { "CF$UID", "5" } }));
    EXPECT_EQ(readElement("<dict><key>CF$UID</key><integer>5</integer><key>a</key><true/></dict>"),
        Value(Dictionary { { "CF$UID", 5 }, { "a", true } }));
}

TEST(XmlList, KeyThatStandsTwiceHasItsLastValue)
{
    EXPECT_EQ(readElement("<dict><key>a</key><integer>1</integer><key>b</key><true/><key>a</key><array/></dict>"),
        Value(Dictionary { { "a", Array() }, { "b", true } }));
}

TEST(XmlList, MalformedElementsMakeNoList)
{
    for (const char* none :
        { "", "text", "<dict><key>a</key></dict>", "<dict><true/></dict>", "<dict><key>a</key><key>b</key></dict>",
            "<array><key>a</key></array>", "<key>a</key>", "<array></dict>", "<array>text</array>", "<true/><true/>",
            "<array/><true/>", "<plist><true/></plist>", "<null/>", "<true>yes</true>", "<string><b>bold</b></string>",
            "<array><true/>", "</array>", "<string>a", "<string a='>'", "<!-- ", "<![CDATA[a]]>", "<string>a</strin>",
            "<Array/>", "<true//>", "<true", "< true/>" })
        EXPECT_EQ(readElement(none), std::nullopt) << none;
    EXPECT_EQ(read("<plist><true/>"), std::nullopt);
    EXPECT_EQ(read("<plist/>"), std::nullopt);
    EXPECT_EQ(read("<plist><true/></plist>rest"), std::nullopt);
    EXPECT_EQ(read("<plist><true/></plist><plist><true/></plist>"), std::nullopt);
}

TEST(XmlList, OtherFormatsMakeNoList)
{
    EXPECT_EQ(read(""), std::nullopt);
    EXPECT_EQ(read("{ a = 1; }"), std::nullopt);
    EXPECT_EQ(read("{\"a\": 1}"), std::nullopt);
    EXPECT_EQ(read("(a, b)"), std::nullopt);
    EXPECT_EQ(read("<html><body/></html>"), std::nullopt);
}

TEST(XmlList, ContainersNestToFiveHundredAndTwelve)
{
    const auto nested = [](std::size_t depth) { return repeated("<array>", depth) + repeated("</array>", depth); };
    EXPECT_TRUE(readElement(nested(512)));
    EXPECT_EQ(readElement(nested(513)), std::nullopt);
    EXPECT_EQ(readElement(nested(10'000)), std::nullopt);
    EXPECT_EQ(readElement(repeated("<array>", 10'000'000)), std::nullopt);
}

/// Fifty megabytes of a piece, between two others.
struct LargeList {
    std::string name;
    std::string before;
    std::string piece;
    std::string after;
    /// What the piece becomes in the text or data that is read.
    std::size_t lengthPerPiece = 0;

    std::size_t pieces() const { return fiftyMegabytes / piece.size(); }
    std::optional<Value> read() const { return readElement(before + repeated(piece, pieces()) + after); }
};

std::string nameOf(const testing::TestParamInfo<LargeList>& info)
{
    return info.param.name;
}

class LargeXmlText : public testing::TestWithParam<LargeList> { };

TEST_P(LargeXmlText, IsRead)
{
    const auto value = GetParam().read();
    ASSERT_TRUE(value && value->string());
    EXPECT_EQ(value->string()->size(), GetParam().pieces() * GetParam().lengthPerPiece);
}

INSTANTIATE_TEST_SUITE_P(XmlList, LargeXmlText,
    testing::Values(LargeList { "Ascii", "<string>", "a", "</string>", 1 },
        LargeList { "TwoByteCharacters", "<string>", "ä", "</string>", 2 },
        LargeList { "Entities", "<string>", "&amp;", "</string>", 1 },
        LargeList { "NumericEntities", "<string>", "&#65;", "</string>", 1 },
        LargeList { "Comments", "<string>", "<!---->a", "</string>", 1 },
        LargeList { "CdataPieces", "<string>", "<![CDATA[a]]>", "</string>", 1 },
        LargeList { "OneComment", "<!--", "-", "--><string></string>", 0 },
        LargeList { "Tags", "<!--", "<a>", "--><string/>", 0 }, LargeList { "LineBreaks", "", "\n", "<string/>", 0 }),
    nameOf);

class LargeXmlData : public testing::TestWithParam<LargeList> { };

TEST_P(LargeXmlData, IsRead)
{
    const auto value = GetParam().read();
    ASSERT_TRUE(value && value->data());
    EXPECT_EQ(value->data()->size(), GetParam().pieces() * GetParam().lengthPerPiece);
}

INSTANTIATE_TEST_SUITE_P(XmlList, LargeXmlData,
    testing::Values(LargeList { "OneLine", "<data>", "AAAA", "</data>", 3 },
        LargeList { "ManyLines", "<data>", "AAAA\n\t", "</data>", 3 }),
    nameOf);

class LargeXmlNonsense : public testing::TestWithParam<LargeList> { };

TEST_P(LargeXmlNonsense, IsRefused)
{
    EXPECT_EQ(GetParam().read(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(XmlList, LargeXmlNonsense,
    testing::Values(LargeList { "Integers", "<array>", "<integer>1</integer>", "</array>" },
        LargeList { "Booleans", "<array>", "<true/>", "</array>" },
        LargeList { "Texts", "<array>", "<string/>", "</array>" },
        LargeList { "Arrays", "<array>", "<array/>", "</array>" },
        LargeList { "Entries", "<dict>", "<key>a</key><true/>", "</dict>" },
        LargeList { "OpenArrays", "", "<array>", "" }, LargeList { "OpenDictionaries", "", "<dict><key>a</key>", "" },
        LargeList { "OpenPlists", "", "<plist>", "" }, LargeList { "Ampersands", "<string>", "&", "</string>" },
        LargeList { "EndsOfCdata", "<string>", "]]&gt;", "</string>" },
        LargeList { "OpenComments", "<string>", "<!--", "</string>" },
        LargeList { "OpenCdata", "<string>", "<![CDATA[", "</string>" },
        LargeList { "LessThan", "<string>", "<", "</string>" }, LargeList { "Integer", "<integer>", "1", "</integer>" },
        LargeList { "Real", "<real>", "1", "</real>" }, LargeList { "Date", "<date>", "2", "</date>" },
        LargeList { "Data", "<data>", "=", "</data>" }, LargeList { "TagName", "<", "a", "/>" },
        LargeList { "Quotes", "<string ", "\"", ">" }, LargeList { "Instructions", "", "<?", "" },
        LargeList { "DocumentTypes", "", "<!DOCTYPE a>", "" }),
    nameOf);

TEST(XmlList, NinetyNineThousandValuesAreRead)
{
    constexpr std::size_t count = 99'000;
    EXPECT_EQ(
        readElement("<array>" + repeated("<date>2024-01-01T00:00:00Z</date>", count) + "</array>")->array()->size(),
        count);
    EXPECT_EQ(readElement("<array>" + repeated("<integer>-1</integer>", count) + "</array>"), Value(Array(count, -1)));
}

TEST(XmlList, DictionaryOfTenThousandKeysIsRead)
{
    std::string text;
    Dictionary expected;
    for (int i = 0; i < 10'000; ++i) {
        const std::string key = "key" + std::to_string(i);
        text += "<key>" + key + "</key><true/>";
        expected.emplace(key, true);
    }
    EXPECT_EQ(readElement("<dict>" + text + "</dict>"), Value(expected));
}

TEST(XmlList, KeysOfOneHashAreReadOrRefusedSoon)
{
    const auto dictionary = [](std::size_t count) {
        std::string text = "<dict>";
        for (std::size_t i = 0; i < count; ++i)
            text += "<key>" + collidingKey(i) + "</key><true/>";
        return text + "</dict>";
    };
    EXPECT_EQ(readElement(dictionary(10'000))->dictionary()->size(), 10'000);
    EXPECT_EQ(readElement(dictionary(49'000)), std::nullopt);
    EXPECT_EQ(readElement("<array>" + repeated(dictionary(4000), 12) + "</array>"), std::nullopt);
}
