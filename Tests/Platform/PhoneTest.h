#pragma once

#include "Support/TestPhone.h"

/// A class of the test program: what the program's own bundle belongs to.
inline const Class testProgramClass("TestProgram", nullptr, nullptr, {});

/// A test on a phone of its own, whose product bundle is the bundle of the test program.
class PhoneTest : public ::testing::Test {
protected:
    TestPhone phone { testProgramClass };
};

inline Bytes bytesOf(std::string_view text)
{
    return Bytes(text.begin(), text.end());
}
