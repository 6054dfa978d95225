#include "Driver/InputLines.h"

#include <array>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::size_t pieceSize = 65'536;

}

InputLines::InputLines(int descriptor, std::function<void()> wait)
    : _descriptor(descriptor)
    , _wait(std::move(wait))
{
}

std::optional<std::string> InputLines::next()
{
    std::size_t searched = _start;
    std::size_t end = 0;
    while ((end = _read.find('\n', searched)) == std::string::npos) {
        searched = _read.size() - _start;
        if (!readMore())
            return _read.empty() ? std::nullopt : std::optional(take(_read.size()));
    }
    std::string line = take(end - _start);
    ++_start;
    return line;
}

bool InputLines::readMore()
{
    _read.erase(0, std::exchange(_start, 0));
    std::array<char, pieceSize> piece {};
    ssize_t count = 0;
    do {
        _wait();
        count = read(_descriptor, piece.data(), piece.size());
    } while (count < 0 && errno == EINTR);
    _read.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    return count > 0;
}

std::string InputLines::take(std::size_t length)
{
    std::string taken = _read.substr(_start, length);
    _start += length;
    return taken;
}
