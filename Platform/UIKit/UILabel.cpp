#include "UIKit/UILabel.h"

#include "Phone/TextMeasure.h"

#include <algorithm>

NS_IMPLEMENTATION(UILabel)
NS_IMPLEMENTATION(UIImageView)

namespace {

constexpr double defaultFontSize = 17;

}

UILabel::UILabel()
    : _font(UIFont::systemFontOfSize(defaultFontSize))
{
    setUserInteractionEnabled(false);
}

void UILabel::setText(std::optional<std::string> text)
{
    _text = std::move(text);
    _attributedText = nullptr;
}

void UILabel::setAttributedText(std::shared_ptr<NSAttributedString> text)
{
    _attributedText = std::move(text);
    _text = _attributedText ? std::optional(_attributedText->string()) : std::nullopt;
}

CGSize UILabel::sizeThatFits(double width) const
{
    if (!_text || _text->empty())
        return {};
    const TextSize size = sizeOfText(*_text, _font, width);
    if (_numberOfLines <= 0)
        return { size.width, size.height };
    return { size.width, std::min(size.height, static_cast<double>(_numberOfLines) * _font.lineHeight()) };
}

UIImageView::UIImageView(std::shared_ptr<UIImage> image)
    : _image(std::move(image))
{
    setUserInteractionEnabled(false);
    if (_image)
        setFrame({ 0, 0, _image->size().width, _image->size().height });
}
