#pragma once

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

/// In a program that was built to look for leaks, looks for them, and ends it when there are any. To be called last in
/// `main`. What the sanitizer does by itself comes too late: the bus library's thread is just ending then, and what
/// that thread holds belongs to nobody.
inline void lookForLeaks()
{
#ifdef __SANITIZE_ADDRESS__
    __lsan_do_leak_check();
#endif
}
