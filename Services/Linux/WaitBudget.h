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
    /// Zero when it is spent.
    Milliseconds left() const { return _left; }
    void spend(Milliseconds time) { _left = time < _left ? _left - time : Milliseconds::zero(); }

    void noteFailureOf(const std::string& daemon) { _failed.insert(daemon); }
    bool hasFailed(const std::string& daemon) const { return _failed.contains(daemon); }

private:
    Milliseconds _left = whole;
    std::set<std::string> _failed;
};
