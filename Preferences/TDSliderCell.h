#pragma once

#include "PreferencesUI/PSTableCell.h"

/// A slider whose value text has more room.
class TDSegmentableSlider final : public PSSegmentableSlider {
    NS_CLASS(TDSegmentableSlider, PSSegmentableSlider)
public:
    CGRect valueTextRectForBounds(const CGRect& bounds) const override;
};

/// A slider row of two lines: the title above, the slider below. Its value is written once, when the slider is let go.
class TDSliderCell : public PSSliderTableCell {
    NS_CLASS(TDSliderCell, PSSliderTableCell)
public:
    /// Points.
    static constexpr double defaultCellHeight() { return 70.0; }

    void updateData(const Row& row);

    // PSTableCell
    bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row) override;
    double heightThatFits(double width) const override;
    void layoutSubviews() override;
};
