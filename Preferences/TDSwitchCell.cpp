#include "TDSwitchCell.h"

#include "libtandem/TDUtils.h"

NS_IMPLEMENTATION(TDSwitchCell)

std::optional<UIColor> TDSwitchCell::switchCellOnTintColor()
{
    return TDUtils::navigationBarColor(isa());
}
