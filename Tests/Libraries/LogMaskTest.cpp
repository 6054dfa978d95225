#include "libvexil/VXLogMask.h"

#include <gtest/gtest.h>

TEST(LogMask, PhoneNumbersHoweverTheyAreWritten)
{
    EXPECT_EQ(maskedLog("to +4915112345678, from (030) 123-45 67 and 555.010.0199;"),
        "to [number 1], from [number 2] and [number 3];");
    EXPECT_EQ(maskedLog("06\u00a012\u00a034\u00a056\u00a078 tel:5550100199"), "[number 1] tel:[number 2]");
}

TEST(LogMask, PhoneNumbersWithWideGaps)
{
    for (const char* number : { "+49 (0) 151 - 123456", "(0)151 - 123 456", "555 12 - 34 - 56",
             "001 49 (151) 12 - 34 - 56", "0151) - (1234567" })
        EXPECT_EQ(maskedLog("to " + std::string(number) + ", 12"), "to [number 1], 12") << number;
    EXPECT_EQ(maskedLog("1234567 -- 7654321   1234567"), "[number 1]   [number 2]");
}

TEST(LogMask, PhoneNumbersWithOtherSpacesHyphensAndUnseenCharacters)
{
    for (const char* gap : { "\t", "\u2009", "\u3000", "\u2010", "\u2013", " \u2014 ", "\u2212", "\u00ad", "\u200e",
             "\u200b", "\u2066", "\ufeff" })
        EXPECT_EQ(maskedLog("0151" + std::string(gap) + "1234567;"), "[number 1];") << gap;
}

TEST(LogMask, PhoneNumbersInDigitsOfOtherScripts)
{
    EXPECT_EQ(
        maskedLog("+٤٩ ١٥١ ١٢٣٤٥٦٧, ０１５１（１２３）４５６７; ०१५१-१२३४५६७"), "[number 1], [number 2]; [number 2]");
    EXPECT_EQ(maskedLog("49 151 1234567, ٤٩١٥١١٢٣٤٥٦٧"), "[number 1], [number 1]");
    EXPECT_EQ(maskedLog("١٢٣٤٥٦"), "١٢٣٤٥٦");
}

TEST(LogMask, NothingIsLeftOfWhatFollowsANumber)
{
    EXPECT_EQ(maskedLog("5550100199 11:22:33:AA:BB:CC"), "[number 1] [address 1]");
    EXPECT_EQ(maskedLog("5550100199 6D1F7A52-0C4E-5B37-9A63-2E8F41D07B19"), "[number 1] [SIM 1]");
    EXPECT_EQ(maskedLog("5550100199\t2026-11-21 09:25:55 +0000 x"), "[number 1]\t2026-11-21 09:25:55 +0000 x");
    EXPECT_EQ(maskedLog("5550100199 12jo@mail.example"), "[number 1][address 1]");
}

TEST(LogMask, TheSameNumberWrittenInTwoWays)
{
    EXPECT_EQ(maskedLog("5550100199, 555 010 0199, 5550100198"), "[number 1], [number 1], [number 2]");
}

TEST(LogMask, SimCardNumbersAndSubscriberNumbers)
{
    EXPECT_EQ(maskedLog("ICCID8949020000012345678 imsi=262011234567890"), "ICCID[number 1] imsi=[number 2]");
}

TEST(LogMask, SimKeysInRowsAndFiles)
{
    EXPECT_EQ(maskedLog("SIM+6D1F7A52-0C4E-5B37-9A63-2E8F41D07B19 /x/6d1f7a52-0c4e-5b37-9a63-2e8f41d07b19.png"),
        "SIM+[SIM 1] /x/[SIM 1].png");
}

TEST(LogMask, SimKeysWithoutHyphens)
{
    EXPECT_EQ(maskedLog("6d1f7a520c4e5b379a632e8f41d07b19 6D1F7A52-0C4E-5B37-9A63-2E8F41D07B19"), "[SIM 1] [SIM 1]");
}

TEST(LogMask, BluetoothAddressesWithoutColons)
{
    EXPECT_EQ(maskedLog("AABBCCDDEEFF aa:bb:cc:dd:ee:ff dev_1122334455aa"), "[address 1] [address 1] dev_[address 2]");
    EXPECT_EQ(maskedLog("491511234567"), "[number 1]");
}

TEST(LogMask, OtherHexadecimalNumbersAndWordsStay)
{
    const std::string line = "deadbeef 323e59b AABBCCDDEEF AABBCCDDEEFFA xAABBCCDDEEFF AABBCCDDEEFFs accede bedded";
    EXPECT_EQ(maskedLog(line), line);
}

TEST(LogMask, BluetoothAddresses)
{
    EXPECT_EQ(maskedLog("11:22:33:AA:BB:CC 11:22:33:aa:bb:cc dev_11_22_33_AA_BB_CC 01-02-03-04-05-06"),
        "[address 1] [address 1] dev_[address 1] [address 2]");
}

TEST(LogMask, MailAddresses)
{
    EXPECT_EQ(maskedLog("from jo.doe+x@mail.example: hi @all"), "from [address 1]: hi @all");
}

TEST(LogMask, MailAddressesBeyondAscii)
{
    EXPECT_EQ(maskedLog("jürgen.m@müller.example, 山田@例え.jp。"), "[address 1], [address 2]。");
    EXPECT_EQ(
        maskedLog("“jo@mail.example”, Jo\u00a0jo@mail.example\u2013"), "“[address 1]”, Jo\u00a0[address 1]\u2013");
    EXPECT_EQ(maskedLog("j\\U00fcrgen@mail.example"), "[address 1]");
}

TEST(LogMask, MailAddressesWithApostrophesAndHostsInBrackets)
{
    EXPECT_EQ(maskedLog("o'brien@mail.example 'jo@mail.example'"), "[address 1] '[address 2]'");
    EXPECT_EQ(maskedLog("user@[10.0.0.1] <user@[IPv6:2001:db8::1]>"), "[address 1] <[address 2]>");
    EXPECT_EQ(maskedLog("user@[] at@ @["), "user@[] at@ @[");
}

TEST(LogMask, TimesAndShortNumbersStay)
{
    const std::string line = "2026-11-21 09:25:55 +0000 Row 12 of 345678, 40x40\n";
    EXPECT_EQ(maskedLog(line), line);
    const std::string numbers = "version 1.2.3-4 (12), 0.5 - 12.25, 110, 10.0.0.1:80, 123   456   789\n";
    EXPECT_EQ(maskedLog(numbers), numbers);
}

TEST(LogMask, NumbersAfterATime)
{
    EXPECT_EQ(maskedLog("2026-11-21 09:25:55 +0000 5550100199"), "2026-11-21 09:25:55 +0000 [number 1]");
}

TEST(LogMask, NothingAndBytesThatAreNoText)
{
    EXPECT_EQ(maskedLog(""), "");
    EXPECT_EQ(maskedLog(std::string("\xff\x00\xc2", 3)), std::string("\xff\x00\xc2", 3));
}
