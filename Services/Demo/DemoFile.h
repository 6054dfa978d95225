#pragma once

#include "Runtime/Value.h"

#include <cstddef>
#include <optional>
#include <string>

/// The content of a file of the host; nothing, and the reason in `problem`, when it is missing, no regular file,
/// unreadable or longer than the limit.
std::optional<Bytes> contentOfFile(const std::string& path, std::size_t limit, std::string& problem);
