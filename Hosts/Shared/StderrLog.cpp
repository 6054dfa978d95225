#include "Shared/StderrLog.h"

#include <cerrno>
#include <cstddef>

#include <unistd.h>

void StderrLog::write(const std::string& line)
{
    // Written at once, so that lines of several processes on one terminal do not run into each other.
    const std::string text = line + '\n';
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t written = ::write(STDERR_FILENO, text.data() + done, text.size() - done);
        if (written < 0 && errno != EINTR)
            return;
        if (written > 0)
            done += static_cast<std::size_t>(written);
    }
}
