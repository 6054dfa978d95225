#include "RoundTrip.h"
#include "Storage/StringTableReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    checkRoundTrip(valueOfStringTable, bytes, size);
    return 0;
}
