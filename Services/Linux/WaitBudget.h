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
    using Milliseconds = std::chrono::milliseconds;

    /// Below the half second that a page may cost, so that what the page does itself has room.
    static constexpr Milliseconds whole { 400 };

    void renew();
    /// How long the next question may be waited for: half of what is left, so that a daemon that hangs does not take
    /// the time of those that answer. Zero when it is spent.
    Milliseconds patience() const { return _left / 2; }
    void spend(Milliseconds time) { _left = time < _left ? _left - time : Milliseconds::zero(); }

    void noteFailureOf(const std::string& daemon) { _failed.insert(daemon); }
    bool hasFailed(const std::string& daemon) const { return _failed.contains(daemon); }

private:
    Milliseconds _left = whole;
    std::set<std::string> _failed;
};
