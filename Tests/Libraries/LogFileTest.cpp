#include "Support/TestPhone.h"
#include "libtandem/TDSettings.h"
#include "libtandem/TDUtils.h"

#include <algorithm>

namespace {

constexpr const char* logPath = "/var/mobile/Library/Logs/com.vexil.tandem.log";
constexpr std::size_t largestLog = std::size_t { 1 } << 20;

class LogFile : public ::testing::Test {
protected:
    void turnLoggingOn() { phone.storeSettings({ { "TandemLoggingEnabled", true } }); }

    /// The lines without the time before each.
    Strings lines()
    {
        Strings found;
        const Bytes content = phone.readFile(logPath).value_or(Bytes());
        for (auto begin = content.begin(); begin != content.end();) {
            const auto end = std::find(begin, content.end(), '\n');
            const std::string line(begin, end);
            constexpr std::size_t timeLength = std::string_view("2026-01-01 00:00:00 +0000 ").size();
            found.push_back(line.substr(std::min(line.size(), timeLength)));
            begin = end == content.end() ? end : end + 1;
        }
        return found;
    }

    TestPhone phone { PSSpecifier::classObject() };
};

TEST_F(LogFile, IsNotWrittenWhileLoggingIsOff)
{
    TDUtils::logMessage("%@", { "line" });
    EXPECT_FALSE(phone.files->exists(logPath));
    EXPECT_EQ(phone.log->lines, Strings { "line" });
}

TEST_F(LogFile, GetsWhatTheSystemLogGetsAndWhichSettingsWereRead)
{
    turnLoggingOn();
    phone.files->remove(logPath);
    TDUtils::logMessage("%@ and %ld", { "text", 5 });
    TDSettings::sharedSettings()->reloadSettings();
    EXPECT_EQ(lines(), (Strings { "text and 5", "Settings were read: {", " 1;", "" }));
    EXPECT_EQ(phone.log->lines, Strings { "text and 5" });
}

TEST_F(LogFile, StopsWhenLoggingIsTurnedOff)
{
    turnLoggingOn();
    phone.storeSettings({});
    phone.files->remove(logPath);
    TDUtils::logMessage("%@", { "line" });
    EXPECT_FALSE(phone.files->exists(logPath));
}

TEST_F(LogFile, KeepsItsNewerHalfWhenItWouldGrowBeyondItsLimit)
{
    turnLoggingOn();
    phone.files->remove(logPath);
    const std::string padding(1000, 'x');
    for (int i = 0; i < 3000; ++i)
        TDUtils::logMessage("%ld %@", { i, padding });
    const Strings kept = lines();
    EXPECT_LE(phone.readFile(logPath)->size(), largestLog);
    EXPECT_GE(phone.readFile(logPath)->size(), largestLog / 2 - 2000);
    for (std::size_t i = 0; i < kept.size(); ++i)
        ASSERT_EQ(kept[i], std::to_string(3000 - kept.size() + i) + " " + padding);
}

TEST_F(LogFile, LineLongerThanTheLimitIsCut)
{
    turnLoggingOn();
    TDUtils::logMessage("%@", { std::string(5 * largestLog, 'x') });
    EXPECT_LE(phone.readFile(logPath)->size(), largestLog);
}

TEST_F(LogFile, ThatCannotBeWrittenIsNoFault)
{
    phone.writeFile("/var/mobile/Library/Logs", Bytes { 1 });
    turnLoggingOn();
    TDUtils::logMessage("%@", { "line" });
    EXPECT_EQ(phone.log->lines, Strings { "line" });
    EXPECT_EQ(phone.readFile("/var/mobile/Library/Logs"), Bytes { 1 });
}

} // namespace
