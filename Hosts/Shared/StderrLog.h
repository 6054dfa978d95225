#pragma once

#include "Phone/SystemLog.h"

/// The system's log on standard error. Line breaks within a line are kept.
class StderrLog final : public SystemLog {
public:
    void write(const std::string& line) override;
};
