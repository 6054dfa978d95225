#pragma once

#include "Phone/SystemLog.h"

#include <string>

/// The machine's log, as journald or a syslog daemon keeps it. A daemon that is absent or busy loses the line; nobody
/// waits for it.
class SyslogLog final : public SystemLog {
public:
    static constexpr const char* systemSocket = "/dev/log";

    explicit SyslogLog(std::string socket = systemSocket);
    SyslogLog(const SyslogLog&) = delete;
    SyslogLog& operator=(const SyslogLog&) = delete;
    ~SyslogLog() override;

    // SystemLog
    void write(const std::string& line) override;

private:
    bool connect();
    bool send(const std::string& record) const;

    std::string _path;
    int _socket = -1;
};
