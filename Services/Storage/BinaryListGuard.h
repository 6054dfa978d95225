#pragma once

#include "Runtime/Value.h"

#include <optional>

/// Whether the bytes call themselves a binary property list, of whatever version.
bool isBinaryList(const Bytes& bytes);

/// A binary property list, whole and within PropertyListLimits, in a form that libplist takes without loss; nothing for
/// any other bytes.
///
/// libplist trusts a file in much: sizes, the kinds of keys, how deep and how often references unfold. Here every
/// object that the root reaches is checked before libplist sees it. What it would read wrongly (an ASCII text that
/// holds a NUL, a negative integer of 16 bytes, an empty UTF-16 text) is put in another form of the same value. What
/// would not be written back as it was (sets, texts that are no Unicode) makes no list.
std::optional<Bytes> guardedBinaryList(const Bytes& bytes);
