#include "Cost.h"

#include <fstream>
#include <string>
#include <sys/resource.h>

namespace {

/// Of a line of the process's state, in kilobytes.
double stateOf(const std::string& name)
{
    std::ifstream state("/proc/self/status");
    for (std::string line; std::getline(state, line);) {
        if (line.starts_with(name + ":"))
            return std::stod(line.substr(name.size() + 1));
    }
    return 0;
}

double processorMilliseconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

} // namespace

Cost costOf(const std::function<void()>& act)
{
    // Has the kernel begin anew with the most memory that was in use.
    std::ofstream("/proc/self/clear_refs") << "5";
    const double memory = stateOf("VmRSS");
    const double time = processorMilliseconds();
    act();
    return { processorMilliseconds() - time, (stateOf("VmHWM") - memory) / 1024 };
}

#ifdef __SANITIZE_ADDRESS__
const bool isSanitized = true;
#else
const bool isSanitized = false;
#endif
