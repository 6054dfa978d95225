#include "libvexil/VXLogMask.h"

#include <gtest/gtest.h>

TEST(LogMask, PhoneNumbersHoweverTheyAreWritten)
{
    EXPECT_EQ(maskedLog("to +4915112345678, from (030) 123-45 67 and 555.010.0199;"),
        "to [number 1], from [number 2] and [number 3];");
    EXPECT_EQ(maskedLog("06\u00a012\u00a034\u00a056\u00a078 tel:5550100199"), "[number 1] tel:[number 2]");
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

TEST(LogMask, BluetoothAddresses)
{
    EXPECT_EQ(maskedLog("11:22:33:AA:BB:CC 11:22:33:aa:bb:cc dev_11_22_33_AA_BB_CC 01-02-03-04-05-06"),
        "[address 1] [address 1] dev_[address 1] [address 2]");
}

TEST(LogMask, MailAddresses)
{
    EXPECT_EQ(maskedLog("from jo.doe+x@mail.example: hi @all"), "from [address 1]: hi @all");
}

TEST(LogMask, TimesAndShortNumbersStay)
{
    const std::string line = "2026-11-21 09:25:55 +0000 Row 12 of 345678, 40x40\n";
    EXPECT_EQ(maskedLog(line), line);
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
