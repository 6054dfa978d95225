#pragma once

#include "UIKit/NSAttributedString.h"
#include "UIKit/UIFont.h"
#include "UIKit/UIView.h"

/// Text on the screen.
class UILabel final : public UIView {
    NS_CLASS(UILabel, UIView)
public:
    UILabel();

    const std::optional<std::string>& text() const { return _text; }
    /// Takes the place of an attributed text too.
    void setText(std::optional<std::string> text);
    const std::shared_ptr<NSAttributedString>& attributedText() const { return _attributedText; }
    void setAttributedText(std::shared_ptr<NSAttributedString> text);

    const std::optional<UIColor>& textColor() const { return _textColor; }
    void setTextColor(std::optional<UIColor> color) { _textColor = color; }
    const UIFont& font() const { return _font; }
    void setFont(UIFont font) { _font = std::move(font); }
    NSTextAlignment textAlignment() const { return _alignment; }
    void setTextAlignment(NSTextAlignment alignment) { _alignment = alignment; }
    /// 0 for as many lines as the text needs.
    long numberOfLines() const { return _numberOfLines; }
    void setNumberOfLines(long lines) { _numberOfLines = lines; }

    /// The size that shows the text within that width; a label of one line never asks for more height than one.
    CGSize sizeThatFits(double width) const;

private:
    std::optional<std::string> _text;
    std::shared_ptr<NSAttributedString> _attributedText;
    std::optional<UIColor> _textColor;
    UIFont _font;
    NSTextAlignment _alignment = NSTextAlignment::Natural;
    long _numberOfLines = 1;
};

/// A picture on the screen; a template picture is drawn in the view's tint colour.
class UIImageView final : public UIView {
    NS_CLASS(UIImageView, UIView)
public:
    UIImageView() = default;
    explicit UIImageView(std::shared_ptr<UIImage> image);

    const std::shared_ptr<UIImage>& image() const { return _image; }
    void setImage(std::shared_ptr<UIImage> image) { _image = std::move(image); }

private:
    std::shared_ptr<UIImage> _image;
};
