#include "Driver/EventLog.h"

#include "Support/Fakes.h"

#include <gtest/gtest.h>

namespace {

class LoggedPhone : public testing::Test {
protected:
    const std::shared_ptr<EventLog> events = std::make_shared<EventLog>();
    Phone phone;
};

TEST_F(LoggedPhone, TellsTheSystemLogWhatItTellsTheUser)
{
    const auto log = std::make_shared<RecordedLog>();
    phone.systemLog = log;
    events->decorate(phone);
    phone.systemLog->write("one");
    phone.systemLog->write("two");
    EXPECT_EQ(log->lines, (std::vector<std::string> { "one", "two" }));
    EXPECT_EQ(events->take(),
        (Json { { { "event", "log" }, { "text", "one" } }, { { "event", "log" }, { "text", "two" } } }));
}

TEST_F(LoggedPhone, WithoutASystemLogTellsTheUserAlone)
{
    events->decorate(phone);
    phone.systemLog->write("one");
    EXPECT_EQ(events->take(), (Json { { { "event", "log" }, { "text", "one" } } }));
}

} // namespace
