#include "Linux/Desktop/SyslogLog.h"

#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// A log daemon that keeps what it gets until it is asked.
class LogDaemon {
public:
    explicit LogDaemon(const std::string& path)
        : _socket(socket(AF_UNIX, SOCK_DGRAM, 0))
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.data(), path.size());
        EXPECT_EQ(bind(_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }
    ~LogDaemon() { close(_socket); }

    std::string next() const
    {
        std::array<char, 4096> record {};
        const ssize_t length = recv(_socket, record.data(), record.size(), MSG_DONTWAIT);
        return length < 0 ? "(nothing)" : std::string(record.data(), static_cast<std::size_t>(length));
    }

private:
    int _socket;
};

std::string recordOf(const std::string& text)
{
    return "<14>tandem[" + std::to_string(getpid()) + "]: " + text;
}

TEST(Syslog, ARecordALine)
{
    const TemporaryDirectory folder;
    const LogDaemon daemon(folder.path("log"));
    SyslogLog log(folder.path("log"));
    log.write("one");
    log.write("two %s\nlines");
    EXPECT_EQ(daemon.next(), recordOf("one"));
    EXPECT_EQ(daemon.next(), recordOf("two %s lines"));
    EXPECT_EQ(daemon.next(), "(nothing)");
}

TEST(Syslog, NoDaemonAndOneThatStartsLater)
{
    const TemporaryDirectory folder;
    SyslogLog log(folder.path("log"));
    log.write("lost");
    const LogDaemon daemon(folder.path("log"));
    log.write("kept");
    EXPECT_EQ(daemon.next(), recordOf("kept"));
}

TEST(Syslog, DaemonThatIsStartedAnew)
{
    const TemporaryDirectory folder;
    SyslogLog log(folder.path("log"));
    {
        const LogDaemon daemon(folder.path("log"));
        log.write("first");
    }
    unlink(folder.path("log").c_str());
    const LogDaemon daemon(folder.path("log"));
    log.write("second");
    EXPECT_EQ(daemon.next(), recordOf("second"));
}

TEST(Syslog, DaemonThatReadsNothingKeepsNobodyWaiting)
{
    const TemporaryDirectory folder;
    const LogDaemon daemon(folder.path("log"));
    SyslogLog log(folder.path("log"));
    for (int i = 0; i < 10'000; ++i)
        log.write("line");
    EXPECT_EQ(daemon.next(), recordOf("line"));
}

} // namespace
