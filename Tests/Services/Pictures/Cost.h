#pragma once

#include <functional>

/// What something costs this process.
struct Cost {
    /// Of the processor, other programs not counted.
    double milliseconds = 0;
    /// How much more memory was in use at a time than before.
    double megabytes = 0;
};

Cost costOf(const std::function<void()>& act);

/// A sanitized program takes longer, and needs memory of its own, which is not counted.
extern const bool isSanitized;
