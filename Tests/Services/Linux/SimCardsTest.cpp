#include "Linux/Telephony/LinuxSubscriptions.h"
#include "Linux/Telephony/MobileProviders.h"
#include "Linux/Telephony/PhoneNumbers.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace {

TEST(SimKeys, AreNameBasedAndInUpperCase)
{
    const std::string key = simKeyOf("8949020000012345678");
    EXPECT_EQ(key.size(), 36U);
    EXPECT_EQ(key[14], '5');
    EXPECT_EQ(key, simKeyOf("8949020000012345678"));
    EXPECT_NE(key, simKeyOf("8949020000012345679"));
    EXPECT_EQ(key.find_first_of("abcdef"), std::string::npos);
    // Logos and bindings of users are kept by it. As Python's uuid.uuid5 makes it.
    EXPECT_EQ(key, "8520BC74-15A6-591D-ABFE-4FDDBCCCE293");
}

TEST(Iccids, AreDigitsWithoutTheFiller)
{
    EXPECT_EQ(plainIccid("8949020000012345678"), "8949020000012345678");
    EXPECT_EQ(plainIccid(" 8949020000012345678F "), "8949020000012345678");
    EXPECT_EQ(plainIccid(""), "");
    EXPECT_EQ(plainIccid("F"), "");
    EXPECT_EQ(plainIccid("rubbish"), "");
    EXPECT_EQ(plainIccid("8949020000012345678\nF"), "");
}

TEST(PhoneNumbers, AsPeopleOfTheRegionWriteThem)
{
    EXPECT_EQ(formattedPhoneNumber("+12025550143", ""), "+1 202-555-0143");
    EXPECT_EQ(formattedPhoneNumber("2025550143", "US"), "(202) 555-0143");
    EXPECT_EQ(formattedPhoneNumber("03012345678", "DE"), "030 12345678");
    EXPECT_EQ(formattedPhoneNumber("+49 30 12345678", "US"), "+49 30 12345678");
}

TEST(PhoneNumbers, NumbersThatTheRegionDoesNotKnowKeepTheirZeros)
{
    for (const char* number : { "01511234567", "0151 1234567", "00491511234567", "+491511234567" })
        EXPECT_EQ(formattedPhoneNumber(number, "DE"), number);
    EXPECT_EQ(formattedPhoneNumber("0791112345", "GB"), "0791112345");
    EXPECT_EQ(formattedPhoneNumber("015112345678", "DE"), "01511 2345678");
}

TEST(PhoneNumbers, TextsThatAreNoneComeBackAsTheyAre)
{
    for (const char* text : { "", "*100#", "voicemail", "1", "2025550143", "+", "\xff" })
        EXPECT_EQ(formattedPhoneNumber(text, ""), text);
}

TEST(Providers, TheInstalledListKnowsCarriersAndRegions)
{
    const MobileProviders providers;
    EXPECT_TRUE(providers.nameOf("26201").contains("Telekom"));
    EXPECT_EQ(providers.regionOf("26201"), "DE");
    EXPECT_EQ(providers.regionOf("310410"), "US");
    EXPECT_EQ(providers.regionOf("23410"), "GB");
    EXPECT_EQ(providers.nameOf("99999"), "");
    EXPECT_EQ(providers.regionOf(""), "");
}

TEST(Providers, NamesOfAccessPointsAreNoNamesOfCarriers)
{
    const TemporaryDirectory folder;
    folder.write("list.xml",
        "<serviceproviders><country code='xx'><provider><name>One</name><name xml:lang='de'>Eins</name><gsm>"
        "<network-id mcc='999' mnc='01'/><apn value='a'><name>Access</name></apn><network-id mcc='999' mnc='02'/>"
        "</gsm></provider><provider><name>Two</name><gsm><network-id mcc='999' mnc='02'/></gsm></provider></country>");
    const MobileProviders providers(QString::fromStdString(folder.path("list.xml")));
    EXPECT_EQ(providers.nameOf("99901"), "One");
    EXPECT_EQ(providers.nameOf("99902"), "One");
    EXPECT_EQ(providers.regionOf("99902"), "XX");
}

TEST(Providers, ListThatIsMissingOrRubbish)
{
    const TemporaryDirectory folder;
    folder.write("list.xml", "<serviceproviders><country><provider><gsm><network-id/></gsm>\xff");
    EXPECT_EQ(MobileProviders(QString::fromStdString(folder.path("list.xml"))).nameOf("26201"), "");
    EXPECT_EQ(MobileProviders("/nowhere").regionOf("26201"), "");
}

} // namespace
