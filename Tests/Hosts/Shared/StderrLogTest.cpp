#include "Shared/StderrLog.h"

#include <gtest/gtest.h>

namespace {

std::string written(const std::vector<std::string>& lines)
{
    testing::internal::CaptureStderr();
    StderrLog log;
    for (const std::string& line : lines)
        log.write(line);
    return testing::internal::GetCapturedStderr();
}

} // namespace

TEST(StderrLog, EachCallIsALine)
{
    EXPECT_EQ(written({ "one", "", "two" }), "one\n\ntwo\n");
}

TEST(StderrLog, LineBreaksNulsAndFormatsAreKept)
{
    using namespace std::string_literals;
    EXPECT_EQ(written({ "a\nb\n", "%s %n", "a\0b"s, "ä" }), "a\nb\n\n%s %n\na\0b\nä\n"s);
}

TEST(StderrLog, LongLinesAreWrittenWhole)
{
    const std::string line(10'000'000, 'x');
    EXPECT_EQ(written({ line }), line + "\n");
}
