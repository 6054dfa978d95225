#pragma once

#include "UIKit/UIControl.h"
#include "UIKit/UILabel.h"

#include <string>

enum class UITableViewCellStyle { Default = 0, Value1 = 1, Value2 = 2, Subtitle = 3 };
enum class UITableViewCellAccessoryType {
    None = 0,
    DisclosureIndicator = 1,
    DetailDisclosureButton = 2,
    Checkmark = 3
};
enum class UITableViewCellSelectionStyle { None = 0, Blue = 1, Gray = 2, Default = 3 };

/// A row on the screen: a text, in some styles a second one, an image before them and an accessory behind them.
class UITableViewCell : public UIView {
    NS_CLASS(UITableViewCell, UIView)
public:
    /// Makes the parts that the style has; no reuse identifier stands for a cell that is not reused.
    void initWithStyle_reuseIdentifier(UITableViewCellStyle style, std::optional<std::string> reuseIdentifier);

    UITableViewCellStyle style() const { return _style; }
    const std::optional<std::string>& reuseIdentifier() const { return _reuseIdentifier; }
    const std::shared_ptr<UILabel>& textLabel() const { return _textLabel; }
    /// Null in the default style.
    const std::shared_ptr<UILabel>& detailTextLabel() const { return _detailTextLabel; }
    const std::shared_ptr<UIImageView>& imageView() const { return _imageView; }

    UITableViewCellAccessoryType accessoryType() const { return _accessoryType; }
    void setAccessoryType(UITableViewCellAccessoryType type) { _accessoryType = type; }
    /// Stands in the place of the accessory type's picture; null for none.
    const std::shared_ptr<UIView>& accessoryView() const { return _accessoryView; }
    void setAccessoryView(const std::shared_ptr<UIView>& view);
    UITableViewCellSelectionStyle selectionStyle() const { return _selectionStyle; }
    void setSelectionStyle(UITableViewCellSelectionStyle style) { _selectionStyle = style; }
    const std::shared_ptr<UIView>& backgroundView() const { return _backgroundView; }
    void setBackgroundView(std::shared_ptr<UIView> view) { _backgroundView = std::move(view); }

    /// The height that shows everything at that width, in points.
    virtual double heightThatFits(double width) const;

    void layoutSubviews() override;

    /// The margins of a row of that width, in points.
    static double horizontalMargin(double width);

protected:
    /// Where texts may stand: behind the image, before the accessory.
    struct TextArea {
        double x = 0;
        double width = 0;
    };
    TextArea textArea(double width) const;

private:
    void layoutTexts(const TextArea& area, double height);
    double accessoryWidth() const;
    /// The image at its own size, shrunk where that is too large for a row.
    CGSize shownImageSize() const;

    UITableViewCellStyle _style = UITableViewCellStyle::Default;
    std::optional<std::string> _reuseIdentifier;
    std::shared_ptr<UILabel> _textLabel;
    std::shared_ptr<UILabel> _detailTextLabel;
    std::shared_ptr<UIImageView> _imageView;
    std::shared_ptr<UIView> _accessoryView;
    std::shared_ptr<UIView> _backgroundView;
    UITableViewCellAccessoryType _accessoryType = UITableViewCellAccessoryType::None;
    UITableViewCellSelectionStyle _selectionStyle = UITableViewCellSelectionStyle::Default;
};
