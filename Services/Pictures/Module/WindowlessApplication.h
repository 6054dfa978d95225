#pragma once

/// Makes an application object without a window where the program has none: looking icons up needs one. It lives as
/// long as the process.
void ensureApplication();
