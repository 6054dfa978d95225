#pragma once

#include "Driver/Json.h"

#include <string>

/// The reply to a "rows" request as people read it: the page's title, its groups and rows, each with its value.
std::string printedPage(const Json& reply);

/// The events of a reply, a line each; "nothing happened" when there are none.
std::string printedEvents(const Json& events);
