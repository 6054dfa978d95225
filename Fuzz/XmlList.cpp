#include "RoundTrip.h"
#include "Storage/XmlListReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    checkRoundTrip(valueOfXmlList, bytes, size);
    return 0;
}
