// Reads property lists and writes each again in binary: copies for another implementation to compare.
//
// On standard input and output a list is its length, in four bytes with the highest first, and its bytes. A list that
// cannot be read or written is copied as one byte.

#include "Storage/StoredPropertyLists.h"

#include <iostream>

namespace {

constexpr std::size_t lengthSize = 4;

/// False at the end of the input.
bool readList(Bytes& list)
{
    std::string length(lengthSize, '\0');
    if (!std::cin.read(length.data(), lengthSize))
        return false;
    std::size_t size = 0;
    for (const char byte : length)
        size = size << 8 | static_cast<std::uint8_t>(byte);
    list.resize(size);
    return static_cast<bool>(
        std::cin.read(reinterpret_cast<char*>(list.data()), static_cast<std::streamsize>(list.size())));
}

void writeList(const Bytes& list)
{
    for (std::size_t i = lengthSize; i-- > 0;)
        std::cout.put(static_cast<char>(list.size() >> (8 * i)));
    std::cout.write(reinterpret_cast<const char*>(list.data()), static_cast<std::streamsize>(list.size()));
}

Bytes copyOf(const Bytes& list)
{
    const Bytes none { '!' };
    const StoredPropertyLists lists;
    const auto value = lists.read(list);
    std::string error;
    return value ? lists.writeBinary(*value, error).value_or(none) : none;
}

} // namespace

int main()
{
    std::ios::sync_with_stdio(false);
    for (Bytes list; readList(list);)
        writeList(copyOf(list));
    return std::cin.eof() && std::cout.flush() ? 0 : 1;
}
