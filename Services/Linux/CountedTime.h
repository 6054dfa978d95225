#pragma once

#include "Linux/WaitBudget.h"

#include <chrono>

/// Counts the time of its scope as waiting for a daemon. Nothing in the scope may count time itself.
class CountedTime {
public:
    explicit CountedTime(WaitBudget& budget)
        : _budget(budget)
    {
    }
    CountedTime(const CountedTime&) = delete;
    CountedTime& operator=(const CountedTime&) = delete;
    ~CountedTime() { _budget.spend(std::chrono::steady_clock::now() - _start); }

private:
    WaitBudget& _budget;
    std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
};
