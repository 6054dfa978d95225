#pragma once

#include "Shared/HostOptions.h"

#include <optional>
#include <string>
#include <vector>

/// What the driver was asked to do.
struct CommandLine {
    enum class Command { Show, Set, Tap, Check, Watch, Drive, Help, Version };

    Command command = Command::Help;
    HostOptions host;
    /// What follows the command, in its order.
    std::vector<std::string> arguments;
    bool json = false;

    /// Nothing, and one line that says what is wrong and what is right in `error`, for anything that is no command line
    /// of ours.
    static std::optional<CommandLine> parse(const std::vector<std::string>& words, std::string& error);
    static std::string usage();
};
