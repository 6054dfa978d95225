#include "Linux/WaitBudget.h"

void WaitBudget::renew()
{
    _left = whole;
    ++_turn;
    _failed.clear();
}

WaitBudget WaitBudget::forTalk() const
{
    WaitBudget talk(*this);
    talk._left = patience();
    talk._isForTalk = true;
    return talk;
}
