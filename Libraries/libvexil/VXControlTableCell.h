#pragma once

#include "PreferencesUI/PSTableCell.h"

/// A row with a switch, whose colour while it is on is the subclass's.
class VXControlTableCell : public PSSwitchTableCell {
    NS_CLASS(VXControlTableCell, PSSwitchTableCell)
public:
    /// The switch's colour while it is on; absent for the platform's own.
    virtual std::optional<UIColor> switchCellOnTintColor() { return std::nullopt; }

    bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row) override;
};
