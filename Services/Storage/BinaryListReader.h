#pragma once

#include "Runtime/Value.h"

/// The root of a binary property list of version 00; throws MalformedList when the bytes are none.
///
/// What several places refer to is read once and shared. Only what the root reaches is read. Objects that overlap in
/// the file make no list: nobody writes them, and their sizes could add up to far more than the file has.
Value valueOfBinaryList(std::string_view bytes);
