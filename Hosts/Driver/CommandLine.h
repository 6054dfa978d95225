#pragma once

#include "Phone/Result.h"
#include "Shared/HostOptions.h"

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

    /// Fails with what is wrong and what is right for anything that is no command line of ours.
    static Result<CommandLine> parse(const std::vector<std::string>& words);
    static std::string usage();
};
