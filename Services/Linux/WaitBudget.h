#pragma once

#include <chrono>
#include <set>
#include <string>

/// How long the daemons may keep a page waiting, all of them together, and which of them have failed meanwhile.
///
/// It is renewed before each turn of a host. A daemon that was absent, died or did not answer in time is not asked
/// again until then, so that one that hangs is waited for once and not at every question of a page.
class WaitBudget {
public:
    using Duration = std::chrono::steady_clock::duration;
    using Milliseconds = std::chrono::milliseconds;

    /// Below the half second that a page may cost, so that what the page does itself has room.
    static constexpr Milliseconds whole { 450 };

    void renew();
    /// Another number after each renewal.
    unsigned turn() const { return _turn; }

    /// How long the next question may be waited for: most of what is left. Questions that do not need each other's
    /// answers are waited for together, so a slow daemon takes no time of the others; the rest is for what must be
    /// asked those after one that hangs. Zero when it is spent.
    Milliseconds patience() const { return std::chrono::floor<Milliseconds>(_left * 4 / 5); }
    void spend(Duration time) { _left = time < _left ? _left - time : Duration::zero(); }

    void noteFailureOf(const std::string& daemon) { _failed.insert(daemon); }
    bool hasFailed(const std::string& daemon) const { return _failed.contains(daemon); }

private:
    Duration _left = whole;
    unsigned _turn = 0;
    std::set<std::string> _failed;
};
