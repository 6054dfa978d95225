#include "Phone/Phone.h"

Phone& Phone::current()
{
    static Phone phone;
    return phone;
}

void Phone::setCurrent(Phone phone)
{
    current() = std::move(phone);
}
