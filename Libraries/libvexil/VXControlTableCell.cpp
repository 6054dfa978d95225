#include "libvexil/VXControlTableCell.h"

NS_IMPLEMENTATION(VXControlTableCell, NS_METHOD(switchCellOnTintColor))

bool VXControlTableCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row)
{
    if (!Super::initWithStyle_reuseIdentifier_specifier(style, std::move(reuseIdentifier), row))
        return false;
    if (const auto control = switchControl())
        control->setOnTintColor(switchCellOnTintColor());
    return true;
}
