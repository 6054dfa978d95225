#include "Linux/Bus/BusContext.h"

#include <algorithm>
#include <csignal>
#include <gio/gio.h>
#include <glib-unix.h>
#include <limits>
#include <utility>

namespace {

using Clock = BusContext::Clock;
using Milliseconds = std::chrono::milliseconds;

/// Too short to be felt, and long enough for thousands of signals.
constexpr Milliseconds longestTakeIn { 50 };
constexpr gint mostDescriptors = 16;

/// GIO ignores broken pipes in the whole process when it makes its first socket, although it needs that nowhere here.
void makeSocketsAvailable()
{
    static const bool isDone = [] {
        struct sigaction action { };
        sigaction(SIGPIPE, nullptr, &action);
        g_type_class_ref(G_TYPE_SOCKET);
        sigaction(SIGPIPE, &action, nullptr);
        return true;
    }();
    (void)isDone;
}

class Timer {
public:
    Timer(GMainContext* context, Milliseconds delay, std::function<void()> act)
        : _source(g_timeout_source_new(
            static_cast<guint>(std::clamp<Milliseconds::rep>(delay.count(), 0, std::numeric_limits<gint>::max()))))
        , _act(std::move(act))
    {
        g_source_set_callback(_source, fire, this, nullptr);
        g_source_attach(_source, context);
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer()
    {
        g_source_destroy(_source);
        g_source_unref(_source);
    }

private:
    static gboolean fire(gpointer timer) noexcept
    {
        // It may be dropped by what it calls.
        const auto act = std::exchange(static_cast<Timer*>(timer)->_act, nullptr);
        act();
        return G_SOURCE_REMOVE;
    }

    GSource* _source;
    std::function<void()> _act;
};

/// Whether there is something to read from a descriptor.
class Input {
public:
    Input(GMainContext* context, int descriptor)
        : _source(g_unix_fd_source_new(descriptor, G_IO_IN))
    {
        g_source_set_callback(_source, G_SOURCE_FUNC(come), this, nullptr);
        g_source_attach(_source, context);
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input()
    {
        g_source_destroy(_source);
        g_source_unref(_source);
    }

    bool hasCome() const { return _hasCome; }

private:
    static gboolean come(gint /*descriptor*/, GIOCondition /*condition*/, gpointer input) noexcept
    {
        static_cast<Input*>(input)->_hasCome = true;
        return G_SOURCE_REMOVE;
    }

    GSource* _source;
    bool _hasCome = false;
};

std::optional<Milliseconds> durationOf(gint timeout)
{
    return timeout < 0 ? std::nullopt : std::optional(Milliseconds(timeout));
}

} // namespace

BusContext::Scope::Scope(const BusContext& context)
    : _context(context._context.get())
{
    g_main_context_push_thread_default(_context);
}

BusContext::Scope::~Scope()
{
    g_main_context_pop_thread_default(_context);
}

// A foreign loop polls while nobody owns the context.
BusContext::BusContext()
    : _context(g_main_context_new_with_flags(G_MAIN_CONTEXT_FLAGS_OWNERLESS_POLLING), g_main_context_unref)
{
    makeSocketsAvailable();
}

BusContext::~BusContext()
{
    // What was dropped last is released from here.
    while (g_main_context_iteration(_context.get(), false)) { }
}

void BusContext::takeIn()
{
    const auto end = Clock::now() + longestTakeIn;
    while (g_main_context_iteration(_context.get(), false) && Clock::now() < end) { }
    deliverNews();
}

void BusContext::takeInNext()
{
    g_main_context_iteration(_context.get(), true);
    takeIn();
}

void BusContext::waitUntilReadable(int descriptor)
{
    const Input input(_context.get(), descriptor);
    while (!input.hasCome())
        g_main_context_iteration(_context.get(), true);
}

void BusContext::deliverNews()
{
    for (const auto& item : std::exchange(_news, {})) {
        if (const auto act = item.lock())
            (*act)();
    }
}

bool BusContext::waitUntil(const std::function<bool()>& isSo, Clock::time_point end)
{
    const auto left = std::chrono::ceil<Milliseconds>(end - Clock::now());
    const Timer alarm(_context.get(), left, [] {});
    while (!isSo()) {
        if (Clock::now() >= end)
            return false;
        g_main_context_iteration(_context.get(), true);
    }
    return true;
}

BusHandle BusContext::callLater(Milliseconds delay, std::function<void()> act)
{
    return std::make_shared<Timer>(_context.get(), delay, std::move(act));
}

BusHandle BusContext::tell(std::function<void()> act)
{
    const auto item = std::make_shared<std::function<void()>>(std::move(act));
    _news.push_back(item);
    g_main_context_wakeup(_context.get());
    return item;
}

BusContext::Wait BusContext::nextWait() const
{
    const bool hasNews = std::ranges::any_of(_news, [](const auto& item) { return !item.expired(); });
    GMainContext* context = _context.get();
    g_main_context_acquire(context);
    gint priority = 0;
    g_main_context_prepare(context, &priority);
    std::vector<GPollFD> found(mostDescriptors);
    gint timeout = 0;
    gint count = 0;
    while ((count = g_main_context_query(context, priority, &timeout, found.data(), static_cast<gint>(found.size())))
        > static_cast<gint>(found.size()))
        found.resize(static_cast<std::size_t>(count));
    g_main_context_release(context);

    Wait wait;
    wait.timeout = hasNews ? Milliseconds(0) : durationOf(timeout);
    for (gint i = 0; i < count; ++i) {
        const GPollFD& descriptor = found[static_cast<std::size_t>(i)];
        wait.descriptors.push_back(
            { descriptor.fd, (descriptor.events & G_IO_IN) != 0, (descriptor.events & G_IO_OUT) != 0 });
    }
    return wait;
}
