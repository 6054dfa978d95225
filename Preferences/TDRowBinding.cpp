#include "TDRowBinding.h"

#include "Phone/Phone.h"

Value valueToStore(const Value& value, const PSSpecifier& row)
{
    return row.propertyForKey(PSProperty::negate).boolValue() ? Value(!value.boolValue()) : value;
}

void postNotificationOf(const PSSpecifier& row)
{
    const auto* name = row.propertyForKey(PSProperty::postNotification).string();
    const auto& center = Phone::current().darwinNotifications;
    if (name && center)
        center->post(*name);
}
