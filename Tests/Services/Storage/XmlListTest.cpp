#include "TemporaryDirectory.h"

#include "Storage/StoredPropertyLists.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::size_t fifteenMegabytes = 15'000'000;

std::optional<Value> read(std::string_view text)
{
    return StoredPropertyLists().read(bytesOf(text));
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

std::string utf16(std::u16string_view text, std::endian order)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
        bytes += order == std::endian::big ? high : low;
        bytes += order == std::endian::big ? low : high;
    }
    return bytes;
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
    EXPECT_EQ(readElement("<integer>&#49;<!-- two -->2<![CDATA[3]]></integer>"), Value(123));
    for (const char* none : { "", "-", "0x", "1.5", "1 2", "--1", "+-1", "0x-1", "-0x8000000000000001", "ten" })
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
    for (const char* none : { "", "1,5", "1.5x", "-", "--1", "+-1", "1 5", "0x1p3" })
        EXPECT_EQ(readElement("<real>" + std::string(none) + "</real>"), std::nullopt) << none;
}

TEST(XmlList, RealsBeyondTheRangeAreZeroOrInfinity)
{
    using namespace std::string_literals;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::string zeros(1000, '0');
    for (const std::string& large : { "1e400"s, "1" + zeros, "0.0001e99999999999999999999"s })
        EXPECT_EQ(readElement("<real>" + large + "</real>"), Value(infinity)) << large;
    EXPECT_EQ(readElement("<real>-1e400</real>"), Value(-infinity));
    for (const std::string& small : { "1e-400"s, "0." + zeros + "1", "1000e-99999999999999999999"s })
        EXPECT_EQ(readElement("<real>" + small + "</real>"), Value(0.0)) << small;
    EXPECT_TRUE(std::signbit(readElement("<real>-1e-400</real>")->real()));
}

TEST(XmlList, RealsHaveADecimalPointWhateverTheLocale)
{
    const TemporaryDirectory locales;
    const std::string command = "localedef -i de_DE -f UTF-8 '" + locales.path("de_DE.UTF-8") + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0)
        GTEST_SKIP() << "a locale with a decimal comma cannot be made";
    setenv("LOCPATH", locales.path().c_str(), 1);
    ASSERT_TRUE(std::setlocale(LC_NUMERIC, "de_DE.UTF-8"));
    EXPECT_EQ(readElement("<real>2.5</real>"), Value(2.5));
    EXPECT_EQ(readElement("<real>2,5</real>"), std::nullopt);
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
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

TEST(XmlList, DocumentTypesWithDeclarationsAreRead)
{
    const Value expected = Array { "a" };
    const std::string list = "<plist version='1.0'><array><string>a</string></array></plist>";
    EXPECT_EQ(read("<!DOCTYPE plist [ ]>" + list), expected);
    EXPECT_EQ(read("<!DOCTYPE plist PUBLIC 'a' 'b' [\n<!-- > -->\n]>" + list), expected);
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY % object '(array | string)'><!ELEMENT plist (array | string)>"
                   "<!ATTLIST plist version CDATA '1.0'><!ELEMENT array (string)*><!ELEMENT string (#PCDATA)>"
                   "<!NOTATION n SYSTEM 'n'><?pi?>]>"
                  + list),
        expected);
}

TEST(XmlList, DeclaredEntitiesAreResolved)
{
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY a 'b'><!ENTITY c '&a;&a;'>]><plist><string>&c;d</string></plist>"),
        Value("bbd"));
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY a '<true/>'>]><plist><array>&a;&a;</array></plist>"),
        Value(Array { true, true }));
}

TEST(XmlList, EntitiesOfOtherFilesAndUndeclaredOnesMakeNoList)
{
    const std::string list = "<plist><string>a&b;</string></plist>";
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY b SYSTEM 'file:///etc/hostname'>]>" + list), std::nullopt);
    EXPECT_EQ(read("<!DOCTYPE plist SYSTEM 'a'>" + list), std::nullopt);
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY % c SYSTEM 'd'>%c;]>" + list), std::nullopt);
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY b '&b;'>]>" + list), std::nullopt);
    EXPECT_EQ(read(list), std::nullopt);
}

/// A list whose last entity stands for `width` of the one before it, and so on, `depth` times.
std::string entitiesInEntities(int depth, int width, const std::string& core)
{
    std::string list = "<!DOCTYPE plist [<!ENTITY e0 '" + core + "'>";
    for (int i = 1; i <= depth; ++i)
        list += "<!ENTITY e" + std::to_string(i) + " '"
            + repeated("&e" + std::to_string(i - 1) + ";", static_cast<std::size_t>(width)) + "'>";
    return list + "]><plist><array>&e" + std::to_string(depth) + ";</array></plist>";
}

TEST(XmlList, EntitiesThatGrowWithoutEndMakeNoList)
{
    EXPECT_EQ(read(entitiesInEntities(3, 10, "<true/>"))->array()->size(), 1000);
    EXPECT_EQ(read(entitiesInEntities(9, 10, "<true/>")), std::nullopt);
    EXPECT_EQ(read(entitiesInEntities(200, 2, "")), std::nullopt);
    const std::string large(100'000, 'a');
    EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY a '" + large + "'>]><plist><string>" + repeated("&a;", 100'000)
                  + "</string></plist>"),
        std::nullopt);
}

TEST(XmlList, EntitiesInOneAnotherToAnyDepthExhaustNoStack)
{
    EXPECT_EQ(read(entitiesInEntities(200, 1, "<true/>")), Value(Array { true }));
    EXPECT_EQ(read(entitiesInEntities(100'000, 1, "<true/>")), std::nullopt);
}

TEST(XmlList, ManyDeclaredAttributesMakeNoList)
{
    std::string attributes;
    for (int i = 0; i < 100'000; ++i)
        attributes += " a" + std::to_string(i) + " CDATA ''";
    EXPECT_EQ(read("<!DOCTYPE plist [<!ATTLIST true" + attributes + ">]><plist><array>" + repeated("<true/>", 1'000'000)
                  + "</array></plist>"),
        std::nullopt);
}

TEST(XmlList, EncodingsThatExpatKnowsAreRead)
{
    const std::string list = "<plist><dict><key>k\xE4</key><string>\xDF \xFF</string></dict></plist>";
    EXPECT_EQ(read("<?xml version='1.0' encoding='ISO-8859-1'?>" + list), Value(Dictionary { { "kä", "ß ÿ" } }));
    EXPECT_EQ(read("<?xml version='1.0' encoding='UTF-8'?>" + list), std::nullopt);
    EXPECT_EQ(read("<?xml version='1.0' encoding='US-ASCII'?>" + list), std::nullopt);
    EXPECT_EQ(read("<?xml version='1.0' encoding='US-ASCII'?><plist><string>a&#228;</string></plist>"), Value("aä"));
    EXPECT_EQ(read("<?xml version='1.0' encoding='EBCDIC-CP-DE'?><plist><true/></plist>"), std::nullopt);
    const std::u16string wide = u"<plist><dict><key>電</key><string>ä 😀</string></dict></plist>";
    for (const std::endian order : { std::endian::big, std::endian::little }) {
        for (const std::u16string declaration : { u"", u"<?xml version='1.0' encoding='UTF-16'?>" })
            EXPECT_EQ(read(utf16(u"\uFEFF" + declaration + wide, order)), Value(Dictionary { { "電", "ä 😀" } }));
    }
    EXPECT_EQ(read(utf16(u"\uFEFF<plist><string>\xD83D</string></plist>", std::endian::big)), std::nullopt);
    EXPECT_EQ(read(utf16(u"\uFEFF" + wide, std::endian::big) + "\n"), std::nullopt);
    EXPECT_EQ(read("<?xml version='1.0' encoding='UTF-16'?><plist><true/></plist>"), std::nullopt);
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
    EXPECT_EQ(readElement("<dict><key>CF$UID</key><integer>18446744073709551615</integer></dict>"),
        Value(Uid { ~std::uint64_t { 0 } }));
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
            "<Array/>", "<true//>", "<true", "< true/>", "<string/>text", "<plist/>", "<x:true/>",
            "<dict><key/><key/></dict>", "<dict>a<key/><true/></dict>" })
        EXPECT_EQ(readElement(none), std::nullopt) << none;
    EXPECT_EQ(read("<plist><true/>"), std::nullopt);
    EXPECT_EQ(read("<plist/>"), std::nullopt);
    EXPECT_EQ(read("<plist>text<true/></plist>"), std::nullopt);
    EXPECT_EQ(read("<array><plist><true/></plist></array>"), std::nullopt);
    EXPECT_EQ(read("<plist><true/></plist>rest"), std::nullopt);
    EXPECT_EQ(read("<plist><true/></plist><plist><true/></plist>"), std::nullopt);
}

TEST(XmlList, OtherFormatsMakeNoList)
{
    EXPECT_EQ(read(""), std::nullopt);
    EXPECT_EQ(read(" \n"), std::nullopt);
    EXPECT_EQ(read("\xEF\xBB\xBF"), std::nullopt);
    EXPECT_EQ(read(std::string(1000, '\0')), std::nullopt);
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

/// Fifteen megabytes of a piece, between two others.
struct LargeList {
    std::string name;
    std::string before;
    std::string piece;
    std::string after;
    /// What the piece becomes in the text or data that is read.
    std::size_t lengthPerPiece = 0;

    std::size_t pieces() const { return fifteenMegabytes / piece.size(); }
    std::optional<Value> read() const { return readElement(before + repeated(piece, pieces()) + after); }
};

std::ostream& operator<<(std::ostream& out, const LargeList& list)
{
    return out << list.name;
}

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
        LargeList { "EndsOfCdata", "<string>", "]]&gt;", "</string>", 3 },
        LargeList { "OneComment", "<!--", "- ", "--><string></string>", 0 },
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
    testing::Values(LargeList { "OpenArrays", "", "<array>", "" },
        LargeList { "OpenDictionaries", "", "<dict><key>a</key>", "" }, LargeList { "OpenPlists", "", "<plist>", "" },
        LargeList { "Ampersands", "<string>", "&", "</string>" },
        LargeList { "OpenComments", "<string>", "<!--", "</string>" },
        LargeList { "OpenCdata", "<string>", "<![CDATA[", "</string>" },
        LargeList { "LessThan", "<string>", "<", "</string>" }, LargeList { "Integer", "<integer>", "1", "</integer>" },
        LargeList { "Date", "<date>", "2", "</date>" }, LargeList { "Data", "<data>", "=", "</data>" },
        LargeList { "TagName", "<", "a", "/>" }, LargeList { "Quotes", "<string ", "\"", ">" },
        LargeList { "Attributes", "<string ", "a='' ", ">" }, LargeList { "Instructions", "", "<?", "" },
        LargeList { "DocumentTypes", "", "<!DOCTYPE a>", "" }),
    nameOf);

class LargeXmlArray : public testing::TestWithParam<LargeList> { };

TEST_P(LargeXmlArray, IsRead)
{
    const auto value = GetParam().read();
    ASSERT_TRUE(value && value->array());
    EXPECT_EQ(value->array()->size(), GetParam().pieces());
}

INSTANTIATE_TEST_SUITE_P(XmlList, LargeXmlArray,
    testing::Values(LargeList { "Integers", "<array>", "<integer>1</integer>", "</array>" },
        LargeList { "Booleans", "<array>", "<true/>", "</array>" },
        LargeList { "Dates", "<array>", "<date>2024-01-01T00:00:00Z</date>", "</array>" },
        LargeList { "Texts", "<array>", "<string/>", "</array>" },
        LargeList { "Arrays", "<array>", "<array/>", "</array>" },
        LargeList { "Dictionaries", "<array>", "<dict><key>a</key><true/></dict>", "</array>" }),
    nameOf);

TEST(XmlList, RealOfMillionsOfDigitsIsInfinity)
{
    EXPECT_EQ(readElement("<real>" + repeated("1", fifteenMegabytes) + "</real>"),
        Value(std::numeric_limits<double>::infinity()));
}

TEST(XmlList, NoMoreThanSixteenMebibytesAreRead)
{
    constexpr std::size_t most = std::size_t { 16 } << 20;
    EXPECT_EQ(read("<true/>" + std::string(most - 7, ' ')), Value(true));
    EXPECT_EQ(read("<true/>" + std::string(most - 6, ' ')), std::nullopt);
}

TEST(XmlList, DictionaryOfHundredsOfThousandsOfKeysIsRead)
{
    std::string text;
    Dictionary expected;
    for (int i = 0; i < 400'000; ++i) {
        const std::string key = "key" + std::to_string(i);
        text += "<key>" + key + "</key><true/>";
        expected.emplace(key, true);
    }
    EXPECT_EQ(readElement("<dict>" + text + "</dict>"), Value(expected));
}
