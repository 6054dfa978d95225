#include "Linux/WaitBudget.h"

void WaitBudget::renew()
{
    _left = whole;
    ++_turn;
    _failed.clear();
}
