#include "TemporaryDirectory.h"

#include "Storage/StoredPropertyLists.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

const Value settings =
    Dictionary { { "TandemEnabled", true }, { "time", 2.5 }, { "negative", -5 }, { "large", 18446744073709551611UL },
        { "date", Date { 1e9 + 0.5 } }, { "data", Bytes(20, 7) }, { "uid", Uid { 300 } }, { "name", "Télécom 😀" },
        { "nul", "a\0b"s }, { "array", Array { 1, "two", Array(), Dictionary { { "k", "two" } } } } };

const std::string xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<!-- settings -->
<dict>
    <key>TandemEnabled</key><true/>
    <key>time</key><real>2.5</real>
    <key>count</key><integer>-12</integer>
    <key>date</key><date>2024-02-29T12:30:45Z</date>
    <key>data</key><data>AAECAw==</data>
    <key>name</key><string>T&#233;l&amp;com <![CDATA[<3]]></string>
    <key>array</key><array><string/><dict><key>k</key><false/></dict></array>
</dict>
</plist>
)";

Bytes binary()
{
    std::string error;
    return StoredPropertyLists().writeBinary(settings, error).value();
}

std::optional<Value> read(const Bytes& bytes)
{
    return StoredPropertyLists().read(bytes);
}

/// Reads the bytes with each of them changed in turn, in several ways. Whatever is read must be written and read alike.
/// The number of changed lists that are lists still.
int readEveryChange(Bytes bytes)
{
    const StoredPropertyLists lists;
    int readable = 0;
    for (std::uint8_t& byte : bytes) {
        const std::uint8_t original = byte;
        for (const int change : { 0x01, 0x02, 0x08, 0x10, 0x20, 0x40, 0x80, 0x0F, 0xF0, 0xFF }) {
            byte = static_cast<std::uint8_t>(original ^ change);
            const auto value = lists.read(bytes);
            if (!value)
                continue;
            ++readable;
            std::string error;
            const auto written = lists.writeBinary(*value, error);
            if (written) {
                EXPECT_EQ(lists.writeBinary(lists.read(*written).value_or(Value()), error), written);
            } else {
                EXPECT_NE(error, "");
            }
        }
        byte = original;
    }
    return readable;
}

} // namespace

TEST(PropertyListDamage, BinaryListCutOffAtAnyByteIsNoList)
{
    const Bytes whole = binary();
    ASSERT_EQ(read(whole), settings);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(read(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))), std::nullopt)
            << length;
}

TEST(PropertyListDamage, BinaryListWithBytesBehindItIsNoList)
{
    Bytes list = binary();
    list.push_back(0);
    EXPECT_EQ(read(list), std::nullopt);
}

TEST(PropertyListDamage, XmlListCutOffAtAnyByteIsNoList)
{
    const Bytes whole = bytesOf(xml);
    ASSERT_TRUE(read(whole));
    const std::size_t end = xml.find("</plist>") + std::string_view("</plist>").size();
    for (std::size_t length = 0; length < end; ++length)
        EXPECT_EQ(read(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))), std::nullopt)
            << length;
}

TEST(PropertyListDamage, LongerOldContentBehindAnXmlListMakesItNoList)
{
    EXPECT_EQ(read(bytesOf(xml + "dict>\n</plist>\n")), std::nullopt);
}

TEST(PropertyListDamage, ChangedBytesOfABinaryListAreSurvived)
{
    EXPECT_GT(readEveryChange(binary()), 0);
}

TEST(PropertyListDamage, ChangedBytesOfAnXmlListAreSurvived)
{
    EXPECT_GT(readEveryChange(bytesOf(xml)), 0);
}

TEST(PropertyListDamage, NothingIsPrinted)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Bytes list = binary();
    list[8] = 0xFF;
    read(list);
    read(bytesOf("<plist><dict>"));
    read(bytesOf("no list at all"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
