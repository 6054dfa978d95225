#pragma once

#include "UIKit/UIColor.h"

class Class;

// What the linker puts in place of functions of the product, for tests of calls that leave no other trace. Unless a
// test asks for something else, each does what the product's own does.

/// While it lives, the core library has another colour for that class. By itself it has one colour for all, so that
/// nobody could tell whether a page asks for it.
class OtherBarColor {
public:
    OtherBarColor(const Class& cls, const UIColor& color);
    ~OtherBarColor();
    OtherBarColor(const OtherBarColor&) = delete;
    OtherBarColor& operator=(const OtherBarColor&) = delete;
};

/// How often the updates of a table have been ended since the program began.
long endedTableUpdates();
