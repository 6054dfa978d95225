#pragma once

#include "PreferencesUI/PSTableCell.h"

/// A cell that has the platform's subtitle style, a title with a second line below, whatever style it is asked for.
class TDSubtitleCell : public PSTableCell {
    NS_CLASS(TDSubtitleCell, PSTableCell)
public:
    // PSTableCell
    bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row) override;
    bool initWithSpecifier(const Row& row) override;
};
