#pragma once

#include <string>

/// The text as one line without control characters, which become spaces, and with single spaces alone: what others call
/// themselves is shown on terminals too. Bytes that are no UTF-8 are replaced.
std::string plainLine(const std::string& text);
/// The text without white space at its ends.
std::string trimmed(const std::string& text);
/// The same for texts that differ in upper and lower case alone.
std::string caseFolded(const std::string& text);

/// A shorter text is first, so that the path "Modem/10" follows "Modem/9".
struct PathsInOrder {
    bool operator()(const std::string& left, const std::string& right) const
    {
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    }
};
