#include "Linux/BusProbe.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr const char* unixTransport = "unix:";
constexpr const char* pathKey = "path=";
constexpr const char* abstractKey = "abstract=";
constexpr int patienceMilliseconds = 100;

class Socket {
public:
    Socket()
        : _descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket()
    {
        if (_descriptor >= 0)
            close(_descriptor);
    }

    bool connectTo(const QByteArray& name) const
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        if (_descriptor < 0 || name.isEmpty() || static_cast<std::size_t>(name.size()) >= sizeof address.sun_path)
            return false;
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        // The name of an abstract socket ends where its length says.
        const bool isAbstract = name.front() == '\0';
        const std::size_t length = offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(name.size());
        return connect(_descriptor, reinterpret_cast<const sockaddr*>(&address),
                   isAbstract ? static_cast<socklen_t>(length) : sizeof address)
            == 0;
    }

    bool send(const QByteArray& text) const
    {
        return ::send(_descriptor, text.constData(), static_cast<std::size_t>(text.size()), MSG_NOSIGNAL)
            == text.size();
    }

    bool hasAnswer() const
    {
        pollfd wait { _descriptor, POLLIN, 0 };
        char character = 0;
        return poll(&wait, 1, patienceMilliseconds) == 1 && recv(_descriptor, &character, 1, 0) == 1;
    }

private:
    int _descriptor;
};

/// The name of the socket, an abstract one after a NUL; empty for an address of another kind.
QByteArray socketName(const QString& address)
{
    const QStringList fields = address.mid(QString(QLatin1String(unixTransport)).size()).split(QLatin1Char(','));
    for (const QString& field : fields) {
        const qsizetype sign = field.indexOf(QLatin1Char('=')) + 1;
        const QByteArray value = QByteArray::fromPercentEncoding(field.mid(sign).toLatin1());
        if (field.startsWith(QLatin1String(pathKey)))
            return value;
        if (field.startsWith(QLatin1String(abstractKey)))
            return QByteArray(1, '\0') + value;
    }
    return {};
}

/// What every client of a bus says first. A bus answers it, whether it lets us in or not.
QByteArray greeting()
{
    return QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(getuid()).toHex() + "\r\n";
}

bool doesAddressAnswer(const QString& address)
{
    if (!address.startsWith(QLatin1String(unixTransport)))
        return true;
    const QByteArray name = socketName(address);
    if (name.isEmpty())
        return true;
    const Socket socket;
    return socket.connectTo(name) && socket.send(greeting()) && socket.hasAnswer();
}

} // namespace

bool doesBusAnswer(const QString& addresses)
{
    const QStringList all = addresses.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return std::any_of(all.begin(), all.end(), doesAddressAnswer);
}
