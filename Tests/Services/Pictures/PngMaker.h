#pragma once

#include "Runtime/Value.h"

#include <string>

/// Makes PNG files that no encoder writes.

Bytes pngChunk(const std::string& type, const Bytes& content);
/// A transparent picture of that many bits a colour, with other chunks after its header.
Bytes clearPng(int width, int height, int bits = 8, const Bytes& more = {});
/// A text that takes far less in the file than in memory.
Bytes pngText(std::size_t length);
