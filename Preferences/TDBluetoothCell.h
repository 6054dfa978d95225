#pragma once

#include "PreferencesUI/PSTableCell.h"

/// The row properties that hold the two texts of a banner.
inline constexpr const char* titleKey = "title";
inline constexpr const char* subTitleKey = "subTitle";

/// A tall banner row: a panel in the accent colour with an icon, a title and a subtitle, and a clear strip below it.
/// The row gives the texts, and the name of the icon in the bundle, once, when the cell is made.
class TDBluetoothCell : public PSTableCell {
    NS_CLASS(TDBluetoothCell, PSTableCell)
public:
    const std::optional<std::string>& subTitle() const { return _subTitle; }
    /// Setting a property leaves the text as it is until `updateData` runs.
    void setSubTitle(std::optional<std::string> subTitle) { _subTitle = std::move(subTitle); }
    const std::optional<std::string>& iconImage() const { return _iconImage; }
    void setIconImage(std::optional<std::string> name) { _iconImage = std::move(name); }
    void updateData();

    // PSTableCell
    bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row) override;
    double preferredHeightForWidth(double width) override;
    void layoutSubviews() override;

private:
    void addPanel();

    std::optional<std::string> _subTitle;
    std::optional<std::string> _iconImage;
};
