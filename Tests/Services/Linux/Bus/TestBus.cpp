#include "Bus/TestBus.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::chrono::minutes patience { 1 };
constexpr int backlog = 16;

std::string configurationFor(const std::string& address)
{
    return "<!DOCTYPE busconfig PUBLIC '-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN'"
           " 'http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd'>"
           "<busconfig><type>session</type><listen>"
        + address
        + "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
          "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>";
}

/// Starts the bus, and returns when it listens.
pid_t started(const std::string& configuration)
{
    std::array<int, 2> ends {};
    if (pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclose(&files, ends[0]);
    posix_spawn_file_actions_addclose(&files, ends[1]);
    std::string file = "--config-file=" + configuration;
    std::array<char*, 5> words { const_cast<char*>("dbus-daemon"), file.data(), const_cast<char*>("--nofork"),
        const_cast<char*>("--print-address"), nullptr };
    pid_t process = -1;
    posix_spawnp(&process, words[0], &files, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    close(ends[1]);
    char byte = 0;
    const bool listens = read(ends[0], &byte, 1) == 1;
    close(ends[0]);
    if (!listens)
        throw std::runtime_error("no bus");
    return process;
}

} // namespace

void TestBus::start()
{
    _folder.write("bus.conf", configurationFor(_address));
    unlink(_folder.path("bus").c_str());
    _daemon = started(_folder.path("bus.conf"));
}

void TestBus::kill()
{
    if (_daemon < 0)
        return;
    ::kill(_daemon, SIGKILL);
    waitpid(_daemon, nullptr, 0);
    _daemon = -1;
}

void TestBus::hang()
{
    ::kill(_daemon, SIGSTOP);
}

void TestBus::wake()
{
    ::kill(_daemon, SIGCONT);
}

SilentBus::SilentBus()
    : _listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    const std::string path = _folder.path("bus");
    std::memcpy(address.sun_path, path.c_str(), path.size());
    if (bind(_listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0
        || listen(_listener, backlog) != 0)
        throw std::runtime_error("no socket");
}

SilentBus::~SilentBus()
{
    turnAway();
}

void SilentBus::turnAway()
{
    const int listener = std::exchange(_listener, -1);
    if (listener >= 0)
        close(listener);
}

bool comesTrue(BusContext& context, const std::function<bool()>& isSo)
{
    const auto end = BusContext::Clock::now() + patience;
    context.takeIn();
    while (!isSo() && BusContext::Clock::now() < end) {
        const BusContext::Wait wait = context.nextWait();
        std::vector<pollfd> polled;
        for (const auto& descriptor : wait.descriptors)
            polled.push_back({ descriptor.number, static_cast<short>(descriptor.forReading ? POLLIN : POLLOUT), 0 });
        const auto timeout = std::min<std::chrono::milliseconds>(wait.timeout.value_or(patience), patience);
        poll(polled.data(), polled.size(), static_cast<int>(timeout.count()));
        context.takeIn();
    }
    return isSo();
}
