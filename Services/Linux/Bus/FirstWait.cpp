#include "Linux/Bus/FirstWait.h"

#include "Linux/Bus/DaemonState.h"

#include <algorithm>
#include <optional>

namespace {

using Time = BusContext::Clock::time_point;

/// When the first of those that are awaited will be late; nothing when none is.
std::optional<Time> nextEnd(const std::vector<DaemonState*>& states)
{
    std::optional<Time> next;
    for (const DaemonState* state : states) {
        if (state->isAwaited())
            next = std::min(next.value_or(state->end()), state->end());
    }
    return next;
}

} // namespace

void FirstWait::askAll()
{
    for (DaemonState* state : _states)
        state->ask();
}

void FirstWait::until(const std::function<bool()>& isSo)
{
    auto end = nextEnd(_states);
    while (end && !isSo()) {
        _context->waitUntil([&] { return isSo() || !nextEnd(_states); }, *end);
        end = nextEnd(_states);
    }
}
