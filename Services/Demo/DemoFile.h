#pragma once

#include "Phone/Result.h"
#include "Runtime/Value.h"

#include <cstddef>
#include <string>

/// The content of a file of the host. It fails, without the file's name, for one that is missing, no regular file,
/// unreadable or longer than the limit.
Result<Bytes> contentOfFile(const std::string& path, std::size_t limit);
