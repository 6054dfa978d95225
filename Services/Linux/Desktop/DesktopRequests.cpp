#include "Linux/Desktop/DesktopRequests.h"

#include "Linux/Bus/FirstWait.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr std::chrono::seconds lingering { 5 };

} // namespace

class DesktopRequests::Job {
public:
    Job(DesktopRequests& requests, const BusRequest& toPortal, Command command, FailureHandler onFailure)
        : _requests(requests)
        , _command(std::move(command))
        , _onFailure(std::move(onFailure))
        , _portal(requests._bus, toPortal, [this](PortalOutcome outcome) { take(outcome); })
    {
    }

    bool isWithPortal() const { return _isWithPortal; }

private:
    void take(PortalOutcome outcome)
    {
        _isWithPortal = false;
        if (outcome == PortalOutcome::Refused)
            runProgram();
        else
            end(outcome != PortalOutcome::Unknown);
    }

    void runProgram()
    {
        _program = startProgram(context(), _command(), [this](bool hasSucceeded) { end(hasSucceeded); });
        if (!_program)
            end(false);
    }

    void end(bool hasSucceeded)
    {
        _news = context().tell([this, hasSucceeded] {
            const FailureHandler onFailure = std::move(_onFailure);
            _requests.remove(*this);
            if (!hasSucceeded && onFailure)
                onFailure();
        });
    }

    BusContext& context() const { return _requests._bus->context(); }

    DesktopRequests& _requests;
    Command _command;
    FailureHandler _onFailure;
    bool _isWithPortal = true;
    PortalRequest _portal;
    BusHandle _program;
    BusHandle _news;
};

DesktopRequests::DesktopRequests(std::shared_ptr<Bus> sessionBus)
    : _bus(std::move(sessionBus))
{
}

DesktopRequests::~DesktopRequests() = default;

void DesktopRequests::start(const BusRequest& toPortal, Command command, FailureHandler onFailure)
{
    _jobs.emplace_back(*this, toPortal, std::move(command), std::move(onFailure));
}

bool DesktopRequests::isPortalBusy() const
{
    return std::ranges::any_of(_jobs, &Job::isWithPortal);
}

void DesktopRequests::finish()
{
    if (!isPortalBusy())
        return;
    bool hasAnswered = false;
    const auto sign = _bus->call(requestToBus("GetId", {}), [&hasAnswered](const BusReply&) { hasAnswered = true; });
    const auto start = BusContext::Clock::now();
    const auto isDone = [this] { return !isPortalBusy(); };
    _bus->context().waitUntil([&] { return hasAnswered || isDone(); }, start + FirstWait::longest);
    if (hasAnswered)
        _bus->context().waitUntil(isDone, start + lingering);
}

void DesktopRequests::remove(const Job& job)
{
    std::erase_if(_jobs, [&job](const Job& other) { return &other == &job; });
}
