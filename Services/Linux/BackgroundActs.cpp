#include "Linux/BackgroundActs.h"

#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace {

/// Long enough for what is decided at once, and too short to be felt.
constexpr std::chrono::milliseconds moment { 100 };
constexpr std::chrono::seconds lingering { 5 };

/// What the thread of an act and the one that started it tell each other.
struct Progress {
    std::mutex mutex;
    std::condition_variable hasEnded;
    std::optional<bool> hasSucceeded;
    bool isLate = false;
};

} // namespace

BackgroundActs::BackgroundActs(std::shared_ptr<WaitBudget> budget)
    : _budget(std::move(budget))
{
}

BackgroundActs::~BackgroundActs()
{
    const QDeadlineTimer end(lingering);
    for (const auto& thread : _threads) {
        if (!thread->wait(end))
            thread->quit();
        thread->wait();
    }
}

bool BackgroundActs::start(Act act, std::function<void()> onFailure)
{
    std::erase_if(_threads, [](const auto& thread) { return thread->isFinished(); });
    const auto progress = std::make_shared<Progress>();
    _threads.emplace_back(QThread::create([this, act = std::move(act), onFailure = std::move(onFailure), progress] {
        const bool succeeded = act();
        const std::lock_guard lock(progress->mutex);
        progress->hasSucceeded = succeeded;
        progress->hasEnded.notify_all();
        if (progress->isLate && !succeeded && onFailure)
            QMetaObject::invokeMethod(this, onFailure, Qt::QueuedConnection);
    }));
    _threads.back()->start();

    const auto start = std::chrono::steady_clock::now();
    std::unique_lock lock(progress->mutex);
    progress->hasEnded.wait_for(
        lock, std::min(moment, _budget->patience()), [&progress] { return progress->hasSucceeded.has_value(); });
    _budget->spend(std::chrono::steady_clock::now() - start);
    progress->isLate = !progress->hasSucceeded;
    return progress->hasSucceeded.value_or(true);
}
