#pragma once

#include "libvexil/VXControlTableCell.h"

/// A switch row in the product's colour.
class TDSwitchCell : public VXControlTableCell {
    NS_CLASS(TDSwitchCell, VXControlTableCell)
public:
    // VXControlTableCell
    std::optional<UIColor> switchCellOnTintColor() override;
};
