#include "UIKit/UIGeometry.h"

#include "Runtime/Boxing.h"

using boxing::numberAt;

CGSize CGSize::fromValue(const Value& value)
{
    return { numberAt(value, 0).doubleValue(), numberAt(value, 1).doubleValue() };
}

CGRect CGRect::fromValue(const Value& value)
{
    return { numberAt(value, 0).doubleValue(), numberAt(value, 1).doubleValue(), numberAt(value, 2).doubleValue(),
        numberAt(value, 3).doubleValue() };
}
