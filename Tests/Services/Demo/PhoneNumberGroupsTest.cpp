#include "Demo/PhoneNumberGroups.h"

#include <gtest/gtest.h>

TEST(PhoneNumberGroups, InternationalNumbers)
{
    EXPECT_EQ(groupedPhoneNumber("+12025550143"), "+1 202 555 0143");
    EXPECT_EQ(groupedPhoneNumber("+447700900123"), "+44 770 090 0123");
    EXPECT_EQ(groupedPhoneNumber("+35312345678"), "+353 123 456 78");
    EXPECT_EQ(groupedPhoneNumber("+79991234567"), "+7 999 123 4567");
}

TEST(PhoneNumberGroups, NationalNumbers)
{
    EXPECT_EQ(groupedPhoneNumber("2025550143"), "202 555 0143");
    EXPECT_EQ(groupedPhoneNumber("5550143"), "555 0143");
    EXPECT_EQ(groupedPhoneNumber("123456789012345"), "123 456 789 012 345");
}

TEST(PhoneNumberGroups, NumbersThatAreWrittenAlready)
{
    for (const char* number : { "+1 555 010 0123", "(202) 555-0143", "202-555-0143", " 2025550143", "2025550143 " })
        EXPECT_EQ(groupedPhoneNumber(number), number);
}

TEST(PhoneNumberGroups, ShortNumbers)
{
    for (const char* number : { "", "+", "1", "112", "55501", "555014", "+555014" })
        EXPECT_EQ(groupedPhoneNumber(number), number);
}

TEST(PhoneNumberGroups, NoNumbers)
{
    for (const char* number : { "1234567890123456", "unknown", "+1202555O143", "++12025550143", "2025550143#",
             "\xD9\xA1\xD9\xA2\xD9\xA3\xD9\xA4" })
        EXPECT_EQ(groupedPhoneNumber(number), number);
}
