#pragma once

#include "Linux/Desktop/DesktopProgram.h"
#include "Linux/Desktop/PortalRequest.h"

#include <functional>
#include <list>
#include <memory>

/// What the user has asked the desktop for and is under way. A portal is asked first and, where there is none or it
/// refuses, a program is started. What the portal may still do is not done by a program too.
class DesktopRequests {
public:
    using Command = std::function<ProgramCommand()>;
    using FailureHandler = std::function<void()>;

    explicit DesktopRequests(std::shared_ptr<Bus> sessionBus);
    DesktopRequests(const DesktopRequests&) = delete;
    DesktopRequests& operator=(const DesktopRequests&) = delete;
    ~DesktopRequests();

    /// `command` is called when a program is to be started. `onFailure` is called when the context delivers its news,
    /// when neither has done it; null for nobody.
    void start(const BusRequest& toPortal, Command command, FailureHandler onFailure);
    /// Waits a few seconds for the portal to decide about what it was asked, so that the process may end. Does not wait
    /// for a bus that hangs.
    void finish();

private:
    class Job;

    bool isPortalBusy() const;
    void remove(const Job& job);

    std::shared_ptr<Bus> _bus;
    std::list<Job> _jobs;
};
