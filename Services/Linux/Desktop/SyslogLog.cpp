#include "Linux/Desktop/SyslogLog.h"

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

namespace {

constexpr const char* programName = "tandem";

/// A record has one line; the daemon would cut it at a line break, or write it in a form of its own.
std::string recordOf(const std::string& line)
{
    std::string text = line;
    for (char& character : text) {
        if (character == '\n' || character == '\0')
            character = ' ';
    }
    return "<" + std::to_string(LOG_USER | LOG_INFO) + ">" + programName + "[" + std::to_string(getpid())
        + "]: " + text;
}

} // namespace

SyslogLog::SyslogLog(std::string socket)
    : _path(std::move(socket))
{
}

SyslogLog::~SyslogLog()
{
    if (_socket >= 0)
        close(_socket);
}

void SyslogLog::write(const std::string& line)
{
    const std::string record = recordOf(line);
    // A daemon that was started anew listens on a new socket.
    if (!send(record) && connect())
        send(record);
}

bool SyslogLog::connect()
{
    if (_socket >= 0)
        close(_socket);
    _socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    if (_path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, _path.data(), _path.size());
    return _socket >= 0 && ::connect(_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool SyslogLog::send(const std::string& record) const
{
    return _socket >= 0
        && ::send(_socket, record.data(), record.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(record.size());
}
