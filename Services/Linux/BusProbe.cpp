#include "Linux/BusProbe.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <netinet/in.h>
#include <systemd/sd-bus.h>

namespace {

using Clock = std::chrono::steady_clock;

/// For all addresses together.
constexpr std::chrono::milliseconds patience { 100 };
constexpr const char* unixTransport = "unix:";
constexpr const char* tcpTransport = "tcp:";
constexpr const char* hostKey = "host=";
constexpr const char* thisHost = "localhost";

struct Closing {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using Connection = std::unique_ptr<sd_bus, Closing>;

bool isNumberOfHost(const QByteArray& host)
{
    std::array<unsigned char, sizeof(in6_addr)> number;
    return inet_pton(AF_INET, host.constData(), number.data()) == 1
        || inet_pton(AF_INET6, host.constData(), number.data()) == 1;
}

bool needsNoLookingUp(const QString& field)
{
    const QString key = QLatin1String(hostKey);
    if (!field.startsWith(key))
        return true;
    const QByteArray host = QByteArray::fromPercentEncoding(field.mid(key.size()).toUtf8());
    return host == thisHost || isNumberOfHost(host);
}

bool mayBeTried(const QString& address)
{
    if (address.startsWith(QLatin1String(unixTransport)))
        return true;
    const QString transport = QLatin1String(tcpTransport);
    const QStringList fields = address.mid(transport.size()).split(QLatin1Char(','));
    return address.startsWith(transport) && std::all_of(fields.begin(), fields.end(), needsNoLookingUp);
}

/// A client that begins to greet the bus, and waits for nothing.
Connection begun(const QString& address)
{
    sd_bus* made = nullptr;
    if (sd_bus_new(&made) < 0)
        return nullptr;
    Connection bus(made);
    const bool hasBegun = sd_bus_set_address(made, address.toUtf8().constData()) >= 0
        && sd_bus_set_bus_client(made, true) >= 0 && sd_bus_negotiate_fds(made, false) >= 0 && sd_bus_start(made) >= 0;
    return hasBegun ? std::move(bus) : nullptr;
}

/// Whether there is anything left to wait for.
bool waitForMore(sd_bus* bus, Clock::time_point end)
{
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
    if (left <= 0)
        return false;
    const int result = sd_bus_wait(bus, static_cast<uint64_t>(left));
    return result >= 0 || result == -EINTR;
}

/// Only a complete greeting tells: a bus may hang after any line of it.
bool doesAnswer(const QString& address, Clock::time_point end)
{
    const Connection bus = mayBeTried(address) ? begun(address) : nullptr;
    while (bus && Clock::now() < end) {
        const int progress = sd_bus_process(bus.get(), nullptr);
        if (progress < 0)
            return false;
        if (sd_bus_is_ready(bus.get()) > 0)
            return true;
        if (progress == 0 && !waitForMore(bus.get(), end))
            return false;
    }
    return false;
}

} // namespace

QString addressThatAnswers(const QString& addresses)
{
    const Clock::time_point end = Clock::now() + patience;
    const QStringList all = addresses.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    const auto found =
        std::find_if(all.begin(), all.end(), [end](const QString& address) { return doesAnswer(address, end); });
    return found == all.end() ? QString() : *found;
}
