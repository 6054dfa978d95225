#include "TDRowBinding.h"

Value valueToStore(const Value& value, const PSSpecifier& row)
{
    return row.propertyForKey(PSProperty::negate).boolValue() ? Value(!value.boolValue()) : value;
}
