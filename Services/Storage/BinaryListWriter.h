#pragma once

#include "Runtime/Value.h"

/// The value as a binary property list of version 00; throws UnwritableValue. Equal scalars are written once, and so is
/// a container that stands in many places, so a list takes about the room that it took when it was read.
Bytes binaryListOf(const Value& root);
