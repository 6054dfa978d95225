#include "TDPageStyle.h"

#include "libtandem/TDUtils.h"

namespace {

constexpr float disabledAlpha = 0.5F;

}

UIColor accentOrWhite()
{
    return TDUtils::isDarkModeEnabled() ? UIColor::whiteColor() : accentColor;
}

void colorTexts(UITableViewCell& cell)
{
    const UIColor color = cell.isUserInteractionEnabled()
        ? accentOrWhite()
        : UIColor::lightGrayColor().colorWithAlphaComponent(disabledAlpha);
    cell.textLabel()->setTextColor(color);
    if (cell.detailTextLabel())
        cell.detailTextLabel()->setTextColor(color);
}

void tintIcon(UITableViewCell& cell, const UIColor& color)
{
    UIImageView& view = *cell.imageView();
    if (view.image())
        view.setImage(view.image()->imageWithRenderingMode(UIImageRenderingMode::AlwaysTemplate));
    view.setTintColor(color);
}
