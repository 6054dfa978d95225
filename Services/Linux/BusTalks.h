#pragma once

#include "Linux/BusCaller.h"

#include <QThreadPool>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

/// What a talk came to, and whether its daemon was absent, died or did not answer in time.
template <typename Result>
struct BusTalkOutcome {
    Result result;
    bool hasFailed;
};

/// A talk with a daemon that has been begun. One that is dropped goes on to its end, and nobody waits for it.
template <typename Result>
class BusTalk {
public:
    BusTalk(std::future<BusTalkOutcome<Result>> coming, std::shared_ptr<WaitBudget> budget, std::string daemon)
        : _coming(std::move(coming))
        , _budget(std::move(budget))
        , _daemon(std::move(daemon))
        , _end(Clock::now() + _budget->patience())
        , _turn(_budget->turn())
    {
    }

    /// Whether it was begun in this turn of the host, and not in an earlier one.
    bool isOfThisTurn() const { return _turn == _budget->turn(); }

    /// Waits for what the talk comes to, no longer than a question could have been waited for when it was begun; an
    /// empty result when it has come to nothing by then. To be asked for once.
    Result result()
    {
        const auto start = Clock::now();
        const bool hasEnded = _coming.wait_until(_end) == std::future_status::ready;
        _budget->spend(Clock::now() - start);
        auto outcome = hasEnded ? _coming.get() : BusTalkOutcome<Result> { {}, true };
        if (outcome.hasFailed)
            _budget->noteFailureOf(_daemon);
        return std::move(outcome.result);
    }

private:
    using Clock = std::chrono::steady_clock;

    std::future<BusTalkOutcome<Result>> _coming;
    std::shared_ptr<WaitBudget> _budget;
    std::string _daemon;
    Clock::time_point _end;
    unsigned _turn;
};

/// Talks with the daemons of a bus, each on a thread of its own: one that hangs keeps no other from being asked what
/// its answers lead to, and a bus that does is not waited for either.
class BusTalks {
public:
    explicit BusTalks(BusCaller bus)
        : _bus(std::move(bus))
    {
        _threads.setMaxThreadCount(mostTalks);
    }

    /// `words` is called on another thread with a caller for it, whose whole patience is that of one question; it must
    /// own what it uses. A daemon that has failed in this turn is not talked to.
    template <typename Words>
    auto begin(const char* daemon, Words words)
    {
        using Result = std::invoke_result_t<Words, const BusCaller&>;
        // What is started must be copyable, and a promise is not.
        const auto outcome = std::make_shared<std::promise<BusTalkOutcome<Result>>>();
        BusTalk<Result> talk(outcome->get_future(), _bus.budget(), daemon);
        if (_bus.budget()->hasFailed(daemon)) {
            outcome->set_value({ {}, true });
            return talk;
        }
        _threads.start([outcome, daemon, words = std::move(words), bus = _bus.forTalk()] {
            Result result = words(bus);
            outcome->set_value({ std::move(result), bus.budget()->hasFailed(daemon) });
        });
        return talk;
    }

private:
    /// Those of a page, and as many that hang from turns before.
    static constexpr int mostTalks = 8;

    BusCaller _bus;
    /// Waits for the talks that go on when it ends.
    QThreadPool _threads;
};
