#pragma once

#include "Runtime/Value.h"

/// The root of an XML property list in UTF-8, UTF-16, ISO-8859-1 or US-ASCII; throws MalformedList when the bytes are
/// none. The element `plist` around the root may be left out. A dictionary that holds the key CF$UID alone, with an
/// index, is a UID: XML has no other form for one.
Value valueOfXmlList(std::string_view bytes);
