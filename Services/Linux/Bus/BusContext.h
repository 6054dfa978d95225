#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct _GMainContext;

/// Something that goes on for as long as it is kept: a call, a subscription, a timer. Once it is dropped, its handler
/// is not called any more.
using BusHandle = std::shared_ptr<const void>;

/// The main context on which everything that comes from the buses is handled. It is our own, so that no event of a
/// window is dispatched while we wait for a daemon. Everything of a context is used from one thread.
class BusContext {
public:
    using Clock = std::chrono::steady_clock;

    /// What a foreign event loop waits for before it calls `takeIn` again.
    struct Wait {
        struct Descriptor {
            int number;
            bool forReading;
            bool forWriting;
            bool operator==(const Descriptor&) const = default;
        };
        std::vector<Descriptor> descriptors;
        /// Absent when there is no timer.
        std::optional<std::chrono::milliseconds> timeout;
    };

    /// Calls of GIO in this scope deliver their results on the context.
    class Scope {
    public:
        explicit Scope(const BusContext& context);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        _GMainContext* _context;
    };

    BusContext();
    BusContext(const BusContext&) = delete;
    BusContext& operator=(const BusContext&) = delete;
    ~BusContext();

    /// Handles what has come, without waiting, and then delivers the news. What comes faster than it can be handled is
    /// left for the next time.
    void takeIn();
    /// Waits until something has come, and takes it in.
    void takeInNext();
    /// Handles what comes until something can be read from the descriptor, or it has ended. Delivers no news.
    void waitUntilReadable(int descriptor);
    /// Handles what comes until that is so; false when it is not so at the end. Delivers no news.
    bool waitUntil(const std::function<bool()>& isSo, Clock::time_point end);

    /// Calls the function once after that time.
    [[nodiscard]] BusHandle callLater(std::chrono::milliseconds delay, std::function<void()> act);
    /// Calls the function once in the next `takeIn`, and never while somebody waits. This is how hosts and pages are
    /// notified, because a page may be what waits.
    [[nodiscard]] BusHandle tell(std::function<void()> act);

    /// To be asked for again whenever the loop is about to wait.
    Wait nextWait() const;

private:
    void deliverNews();

    std::unique_ptr<_GMainContext, void (*)(_GMainContext*)> _context;
    std::vector<std::weak_ptr<std::function<void()>>> _news;
};
