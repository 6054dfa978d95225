#pragma once

#include "PreferencesUI/PSTableCell.h"

/// A row with a small caption above a picture of the row's full width.
class TDImageCell : public PSTableCell {
    NS_CLASS(TDImageCell, PSTableCell)
public:
    /// Makes the caption and the picture. Called once, while the cell is made: a second call would add a second pair.
    void updateData(const Row& row);

    // PSTableCell
    bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row) override;
    double preferredHeightForWidth(double width) override;
    void layoutSubviews() override;
};
