#include "RoundTrip.h"
#include "Storage/BinaryListReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    checkRoundTrip(valueOfBinaryList, bytes, size);
    return 0;
}
