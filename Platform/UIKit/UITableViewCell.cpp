#include "UIKit/UITableViewCell.h"

#include <algorithm>
#include <cmath>

NS_IMPLEMENTATION(UITableViewCell, NS_METHOD(textLabel), NS_METHOD(detailTextLabel), NS_METHOD(imageView))

namespace {

constexpr double subtitleFontSize = 12;
constexpr double narrowMargin = 16;
constexpr double wideMargin = 20;
/// From this width on a phone lies on its side, or is a tablet.
constexpr double wideWidth = 414;
/// The icons of a settings page are this large; other images keep their size up to the second.
constexpr double iconSize = 29;
constexpr double greatestImageSize = 40;
constexpr double imageSpacing = 15;
constexpr double accessorySpacing = 8;
constexpr double disclosureWidth = 8;
constexpr double checkmarkWidth = 14;
constexpr double detailButtonWidth = 42;
constexpr double verticalPadding = 11;
constexpr double subtitleSpacing = 2;
constexpr double valueSpacing = 8;
constexpr double leastHeight = 44;

/// The offset that centres the extent, on a half point so that edges stay sharp on screens of two pixels a point.
double centred(double extent, double within)
{
    return std::round(within - extent) / 2;
}

CGSize sizeOf(const std::shared_ptr<UILabel>& label, double width)
{
    return label ? label->sizeThatFits(width) : CGSize {};
}

} // namespace

void UITableViewCell::initWithStyle_reuseIdentifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier)
{
    _style = style;
    _reuseIdentifier = std::move(reuseIdentifier);
    _imageView = std::make_shared<UIImageView>();
    _textLabel = std::make_shared<UILabel>();
    addSubview(_imageView);
    addSubview(_textLabel);
    if (style == UITableViewCellStyle::Default)
        return;
    _detailTextLabel = std::make_shared<UILabel>();
    if (style == UITableViewCellStyle::Subtitle)
        _detailTextLabel->setFont(UIFont::systemFontOfSize(subtitleFontSize));
    else
        _detailTextLabel->setTextAlignment(NSTextAlignment::Right);
    addSubview(_detailTextLabel);
}

void UITableViewCell::setAccessoryView(const std::shared_ptr<UIView>& view)
{
    if (_accessoryView)
        _accessoryView->removeFromSuperview();
    _accessoryView = view;
    addSubview(view);
}

double UITableViewCell::horizontalMargin(double width)
{
    return width < wideWidth ? narrowMargin : wideMargin;
}

double UITableViewCell::accessoryWidth() const
{
    if (_accessoryView)
        return _accessoryView->frame().width;
    switch (_accessoryType) {
    case UITableViewCellAccessoryType::DisclosureIndicator:
        return disclosureWidth;
    case UITableViewCellAccessoryType::DetailDisclosureButton:
        return detailButtonWidth;
    case UITableViewCellAccessoryType::Checkmark:
        return checkmarkWidth;
    default:
        return 0;
    }
}

CGSize UITableViewCell::shownImageSize() const
{
    if (!_imageView || !_imageView->image())
        return {};
    const CGSize natural = _imageView->image()->size();
    const double scale = std::min(1.0, greatestImageSize / std::max({ natural.width, natural.height, 1.0 }));
    return { natural.width * scale, natural.height * scale };
}

UITableViewCell::TextArea UITableViewCell::textArea(double width) const
{
    const double margin = horizontalMargin(width);
    double left = margin;
    if (_imageView && _imageView->image())
        left += std::max(iconSize, shownImageSize().width) + imageSpacing;
    const double accessory = accessoryWidth();
    const double right = width - margin - (accessory > 0 ? accessory + accessorySpacing : 0);
    return { left, std::max(0.0, right - left) };
}

double UITableViewCell::heightThatFits(double width) const
{
    const double available = textArea(width).width;
    const double title = sizeOf(_textLabel, available).height;
    const double detail = sizeOf(_detailTextLabel, available).height;
    double content = std::max(title, detail);
    if (_style == UITableViewCellStyle::Subtitle && detail > 0)
        content = title + subtitleSpacing + detail;
    return std::max(leastHeight, content + 2 * verticalPadding);
}

void UITableViewCell::layoutSubviews()
{
    const double width = frame().width;
    const double height = frame().height;
    if (_imageView) {
        const CGSize shown = shownImageSize();
        const double column = shown.width > 0 ? std::max(iconSize, shown.width) : 0;
        _imageView->setFrame({ horizontalMargin(width) + centred(shown.width, column), centred(shown.height, height),
            shown.width, shown.height });
    }
    if (_accessoryView) {
        const CGRect view = _accessoryView->frame();
        _accessoryView->setFrame(
            { width - horizontalMargin(width) - view.width, centred(view.height, height), view.width, view.height });
    }
    if (_textLabel)
        layoutTexts(textArea(width), height);
}

void UITableViewCell::layoutTexts(const TextArea& area, double height)
{
    if (_style == UITableViewCellStyle::Subtitle) {
        const double title = sizeOf(_textLabel, area.width).height;
        const double detail = sizeOf(_detailTextLabel, area.width).height;
        const double spacing = title > 0 && detail > 0 ? subtitleSpacing : 0;
        const double top = centred(title + spacing + detail, height);
        _textLabel->setFrame({ area.x, top, area.width, title });
        _detailTextLabel->setFrame({ area.x, top + title + spacing, area.width, detail });
        return;
    }
    if (!_detailTextLabel) {
        const double title = sizeOf(_textLabel, area.width).height;
        _textLabel->setFrame({ area.x, centred(title, height), area.width, title });
        return;
    }
    // The title keeps its width; the value has what is left of the line.
    const double titleWidth = std::min(area.width, std::ceil(sizeOf(_textLabel, 0).width));
    const double valueWidth = std::max(0.0, area.width - titleWidth - valueSpacing);
    const double title = sizeOf(_textLabel, titleWidth).height;
    const double value = sizeOf(_detailTextLabel, valueWidth).height;
    _textLabel->setFrame({ area.x, centred(title, height), titleWidth, title });
    _detailTextLabel->setFrame({ area.x + area.width - valueWidth, centred(value, height), valueWidth, value });
}
