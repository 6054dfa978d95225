#include "Linux/Telephony/MobileProviders.h"
#include "Linux/Telephony/PhoneNumbers.h"
#include "Linux/Telephony/SimCard.h"
#include "Linux/Telephony/SimNames.h"
#include "Linux/Telephony/Texts.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace {

TEST(SimKeys, NeverChange)
{
    // Logos and bindings of users are kept by them. As Python's uuid.uuid5 makes them.
    const std::pair<const char*, const char*> keys[] = {
        { "8949020000012345678", "8520BC74-15A6-591D-ABFE-4FDDBCCCE293" },
        { "8949020000087654321", "991DD7A3-5F3C-5D22-91F8-5DCAF5360DC1" },
        { "8941010000011112222", "FEBE3D24-525E-5CF3-8961-997798E19D0C" },
        { "893581234000000000000", "A4F5431F-8249-5487-AAE9-7EB810F5B30B" },
        { "1234567890", "A9171ADE-1101-51A7-A4A2-7DBF6677AE7F" },
        { "1234567890123456789012", "90B48ADD-875F-5F79-829D-97EAE65117A2" },
    };
    for (const auto& [iccid, key] : keys)
        EXPECT_EQ(simKeyOf(iccid), key);
}

TEST(PlainLines, HaveSingleSpacesInPlaceOfControlsAndGaps)
{
    EXPECT_EQ(plainLine("\x1b[2JNew\r\nline\u2029\x07"), "[2JNew line");
    EXPECT_EQ(plainLine("  a \t\u00a0\u2003b\u0085c\x7f"), "a b c");
    EXPECT_EQ(plainLine("\x1b\n \u2028"), "");
    EXPECT_EQ(plainLine(""), "");
    EXPECT_EQ(plainLine("a\xff\x80 ü"), "a\ufffd\ufffd ü");
}

TEST(TrimmedTexts, KeepWhatIsBetweenTheirEnds)
{
    EXPECT_EQ(trimmed(" \n\u00a0a \n b\t"), "a \n b");
    EXPECT_EQ(trimmed(" \u3000"), "");
    EXPECT_EQ(trimmed("a"), "a");
}

TEST(CaseFoldedTexts, AreTheSameInUpperAndLowerCase)
{
    EXPECT_EQ(caseFolded("ÄPFEL Σας"), caseFolded("äpfel ΣΑΣ"));
    EXPECT_NE(caseFolded("a"), caseFolded("b"));
}

TEST(Iccids, AreDigitsWithoutTheFiller)
{
    EXPECT_EQ(plainIccid("8949020000012345678"), "8949020000012345678");
    EXPECT_EQ(plainIccid(" 8949020000012345678F "), "8949020000012345678");
    EXPECT_EQ(plainIccid("8949020000012345678ff"), "8949020000012345678");
    EXPECT_EQ(plainIccid("1234567890"), "1234567890");
    EXPECT_EQ(plainIccid("1234567890123456789012"), "1234567890123456789012");
    for (const char* text : { "", "F", "rubbish", "123456789", "12345678901234567890123", "8949020000012345678\nF",
             "8949020000012345678F1", "89490200000 12345678" })
        EXPECT_EQ(plainIccid(text), "") << text;
}

TEST(SimNames, AreReadAgainWhenTheFileHasChanged)
{
    const TemporaryDirectory folder;
    SimNames names(folder.path("names"));
    EXPECT_EQ(names.nameOf("KEY", "8949020000012345678"), "");
    folder.write("names", " key = Work \r\n8949020000087654321F=Home\nKEY\n=x\n");
    EXPECT_EQ(names.nameOf("KEY", "8949020000012345678"), "Work");
    EXPECT_EQ(names.nameOf("OTHER", "8949020000087654321"), "Home");
    EXPECT_EQ(names.nameOf("OTHER", "8949020000012345678"), "");
    folder.write("names", "KEY=Private\n");
    EXPECT_EQ(names.nameOf("KEY", "8949020000087654321"), "Private");
    folder.write("names", "KEY=\n");
    EXPECT_EQ(names.nameOf("KEY", "8949020000087654321"), "");
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
    EXPECT_NE(providers.nameOf("26201").find("Telekom"), std::string::npos);
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
    const MobileProviders providers(folder.path("list.xml"));
    EXPECT_EQ(providers.nameOf("99901"), "One");
    EXPECT_EQ(providers.nameOf("99902"), "One");
    EXPECT_EQ(providers.regionOf("99902"), "XX");
}

TEST(Providers, ListThatIsMissingOrRubbish)
{
    const TemporaryDirectory folder;
    folder.write("list.xml", "<serviceproviders><country><provider><gsm><network-id/></gsm>\xff");
    EXPECT_EQ(MobileProviders(folder.path("list.xml")).nameOf("26201"), "");
    EXPECT_EQ(MobileProviders("/nowhere").regionOf("26201"), "");
}

} // namespace
