#pragma once

#include "Driver/Json.h"

#include <string>
#include <vector>

/// The reply to a "rows" request as people read it: the page's title, its groups and rows, each with its value. `cells`
/// holds the "cell" of each row, null for a group.
std::string printedPage(const Json& reply, const std::vector<Json>& cells);

/// The events of a reply, a line each; "nothing happened" when there are none.
std::string printedEvents(const Json& events);
