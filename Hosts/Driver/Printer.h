#pragma once

#include "Driver/Json.h"

#include <string>

/// A page as people read it: its title, its groups and rows, each with its value. `reply` is the reply to a "rows"
/// request, with the "cell" of each row in "cells", null for a group.
std::string printedPage(const Json& reply);

/// The events of a reply, a line each; "nothing happened" when there are none.
std::string printedEvents(const Json& events);
