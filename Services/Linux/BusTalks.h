#pragma once

#include "Linux/BusCaller.h"

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

/// What a talk came to, and whether its daemon was absent, died or did not answer in time.
template <typename Result>
struct BusTalkOutcome {
    Result result;
    bool hasFailed;
};

/// The daemons with which a talk is under way, known to the threads of the talks as well.
class DaemonsInTalk {
public:
    /// False when there is one under way already.
    bool add(const std::string& daemon)
    {
        const std::lock_guard lock(_mutex);
        return _daemons.insert(daemon).second;
    }

    void remove(const std::string& daemon)
    {
        const std::lock_guard lock(_mutex);
        _daemons.erase(daemon);
    }

private:
    std::mutex _mutex;
    std::set<std::string> _daemons;
};

/// A talk with a daemon that has been begun. One that is dropped goes on to its end, and nobody waits for it.
template <typename Result>
class BusTalk {
public:
    BusTalk(std::future<BusTalkOutcome<Result>> coming, std::shared_ptr<WaitBudget> budget, std::string daemon)
        : _coming(std::move(coming))
        , _budget(std::move(budget))
        , _daemon(std::move(daemon))
        , _end(Clock::now() + _budget->patienceWithTalk())
        , _turn(_budget->turn())
    {
    }

    /// Whether it was begun in this turn of the host, and not in an earlier one.
    bool isOfThisTurn() const { return _turn == _budget->turn(); }

    /// Waits for what the talk comes to, hardly longer than a question could have been waited for when it was begun; an
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
    }

    /// `words` is called on another thread with a caller for it, whose whole patience is that of one question; it must
    /// own what it uses. What it throws makes an empty result. A daemon that has failed in this turn is not talked to,
    /// nor is one with which a talk of an earlier turn is still under way; it counts as failed.
    template <typename Words>
    auto begin(const char* daemon, Words words)
    {
        using Result = std::invoke_result_t<Words, const BusCaller&>;
        const auto outcome = std::make_shared<std::promise<BusTalkOutcome<Result>>>();
        BusTalk<Result> talk(outcome->get_future(), _bus.budget(), daemon);
        if (_bus.budget()->hasFailed(daemon) || !_inTalk->add(daemon)) {
            outcome->set_value({ {}, true });
            return talk;
        }
        const bool isStarted =
            start([outcome, daemon, words = std::move(words), bus = _bus.forTalk(), inTalk = _inTalk] {
                auto end = endOf<Result>(words, bus, daemon);
                // First, because whoever waits for the outcome may begin the next talk at once.
                inTalk->remove(daemon);
                outcome->set_value(std::move(end));
            });
        if (!isStarted) {
            _inTalk->remove(daemon);
            outcome->set_value({ {}, true });
        }
        return talk;
    }

    const std::shared_ptr<WaitBudget>& budget() const { return _bus.budget(); }

private:
    /// Joined when it goes. The toolkit's own threads are not, and may still be ending when the process does.
    struct Thread {
        std::shared_ptr<std::atomic<bool>> hasEnded;
        std::jthread thread;
    };

    /// False when the system has no thread left.
    template <typename Work>
    bool start(Work work)
    {
        std::erase_if(_threads, [](const Thread& thread) { return thread.hasEnded->load(); });
        const auto hasEnded = std::make_shared<std::atomic<bool>>(false);
        try {
            _threads.push_back({ hasEnded, std::jthread([hasEnded, work = std::move(work)] {
                                    work();
                                    hasEnded->store(true);
                                }) });
        } catch (const std::system_error&) {
            return false;
        }
        return true;
    }

    template <typename Result, typename Words>
    static BusTalkOutcome<Result> endOf(const Words& words, const BusCaller& bus, const char* daemon)
    {
        try {
            Result result = words(bus);
            return { std::move(result), bus.budget()->hasFailed(daemon) };
        } catch (...) {
            // As when there is no memory for what a daemon answers. It would end the process.
            return { {}, true };
        }
    }

    BusCaller _bus;
    std::shared_ptr<DaemonsInTalk> _inTalk = std::make_shared<DaemonsInTalk>();
    /// Those under way are waited for when this ends; each is bounded by its budget.
    std::vector<Thread> _threads;
};
