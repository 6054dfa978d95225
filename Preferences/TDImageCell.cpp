#include "TDImageCell.h"

NS_IMPLEMENTATION(TDImageCell, NS_METHOD(updateData))

namespace {

constexpr long captionTag = 10011;
constexpr long pictureTag = 10012;
constexpr double cellHeight = 127.0;
constexpr double captionFontSize = 18.0;
constexpr CGPoint captionOrigin { 8, 2 };
constexpr double captionHeight = 18;
constexpr double pictureTop = 20;

} // namespace

bool TDImageCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row)
{
    if (!Super::initWithStyle_reuseIdentifier_specifier(style, std::move(reuseIdentifier), row))
        return false;
    setBackgroundColor(UIColor::whiteColor());
    setBackgroundView(nullptr);
    updateData(row);
    return true;
}

void TDImageCell::updateData(const Row& row)
{
    const auto caption = std::make_shared<UILabel>();
    caption->setTag(captionTag);
    caption->setText(row ? row->propertyForKey("title").optionalString() : std::nullopt);
    caption->setFont(UIFont::systemFontOfSize(captionFontSize));
    caption->setBackgroundColor(UIColor::clearColor());
    caption->setTextColor(UIColor::darkGrayColor());
    addSubview(caption);

    const auto picture = std::make_shared<UIImageView>();
    picture->setTag(pictureTag);
    picture->setImage(row ? row->propertyForKey(PSProperty::iconImage).as<UIImage>() : nullptr);
    addSubview(picture);
}

double TDImageCell::preferredHeightForWidth(double /*width*/)
{
    return cellHeight;
}

void TDImageCell::layoutSubviews()
{
    Super::layoutSubviews();
    // As wide as the cell though it starts further in, so its end runs past the cell's edge.
    if (const auto caption = viewWithTag(captionTag))
        caption->setFrame({ captionOrigin.x, captionOrigin.y, bounds().width, captionHeight });
    if (const auto picture = viewWithTag(pictureTag))
        picture->setFrame({ 0, pictureTop, bounds().width, preferredHeightForWidth(0) - pictureTop });
}
