#pragma once

#include <string>

/// The system's log: one line a call.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    virtual void write(const std::string& line) = 0;
};
