#pragma once

#include "Linux/Bus/BusContext.h"

#include <functional>
#include <memory>
#include <vector>

class DaemonState;

/// How long daemons keep somebody waiting, all of a group together. Only what is asked for the first time is waited
/// for, or for the first time after the daemon has come back; who is late once is not waited for again.
class FirstWait {
public:
    /// From asking on. Below the half second that a page may take, so that the page itself has room.
    static constexpr std::chrono::milliseconds longest { 450 };

    explicit FirstWait(std::shared_ptr<BusContext> context)
        : _context(std::move(context))
    {
    }

    void add(DaemonState& state) { _states.push_back(&state); }
    void remove(DaemonState& state) { std::erase(_states, &state); }
    /// Asks the daemons that have not been asked yet. Called when one of them is needed, because those of a page answer
    /// at the same time then.
    void askAll();
    /// Waits until that is so, or no daemon is to be waited for any more.
    void until(const std::function<bool()>& isSo);

private:
    std::shared_ptr<BusContext> _context;
    std::vector<DaemonState*> _states;
};
