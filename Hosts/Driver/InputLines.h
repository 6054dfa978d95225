#pragma once

#include <functional>
#include <optional>
#include <string>

/// The lines that are written to this program. Nothing is read before it has come, so that other things can be waited
/// for meanwhile.
class InputLines {
public:
    /// `wait` waits until there is something to read from the descriptor.
    InputLines(int descriptor, std::function<void()> wait);

    /// Without its line break, which the last line may lack. Nothing at the end.
    std::optional<std::string> next();

private:
    /// False at the end.
    bool readMore();
    std::string take(std::size_t length);

    int _descriptor;
    std::function<void()> _wait;
    std::string _read;
    /// What comes before has been taken.
    std::size_t _start = 0;
};
