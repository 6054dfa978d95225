#include "Phone/Phone.h"
#include "UIKit/UILabel.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

/// Every text is as many points wide as it has bytes, on lines of 10 points; remembers what it was asked.
class FakeTextMeasure final : public TextMeasure {
public:
    TextSize measure(const std::string& text, const std::string& fontName, double fontSize, double width) const override
    {
        asked.push_back(text + " " + fontName + " " + std::to_string(static_cast<int>(fontSize)) + " "
            + std::to_string(static_cast<int>(width)));
        const auto length = static_cast<double>(text.size());
        if (width <= 0 || length <= width)
            return { length, 10 };
        return { width, 10 * std::ceil(length / width) };
    }
    mutable std::vector<std::string> asked;
};

class Labels : public ::testing::Test {
protected:
    ~Labels() override { Phone::setCurrent({}); }

    std::shared_ptr<UILabel> labelOf(const std::string& text, long lines = 1)
    {
        auto label = std::make_shared<UILabel>();
        label->setText(text);
        label->setNumberOfLines(lines);
        return label;
    }
};

TEST_F(Labels, BeginEmptyInTheSystemFontOnOneLine)
{
    const UILabel label;
    EXPECT_EQ(label.text(), std::nullopt);
    EXPECT_EQ(label.attributedText(), nullptr);
    EXPECT_EQ(label.font(), (UIFont { "System", 17 }));
    EXPECT_EQ(label.textAlignment(), NSTextAlignment::Natural);
    EXPECT_EQ(label.numberOfLines(), 1);
    EXPECT_FALSE(label.isUserInteractionEnabled());
    EXPECT_EQ(label.sizeThatFits(100), CGSize());
}

TEST_F(Labels, ShowEitherAPlainTextOrAnAttributedOne)
{
    const auto text = std::make_shared<NSAttributedString>();
    text->append("attributed", {});
    UILabel label;
    label.setAttributedText(text);
    EXPECT_EQ(label.text(), "attributed");
    label.setText("plain");
    EXPECT_EQ(label.text(), "plain");
    EXPECT_EQ(label.attributedText(), nullptr);
    label.setAttributedText(nullptr);
    EXPECT_EQ(label.text(), std::nullopt);
    label.setText(std::nullopt);
    EXPECT_EQ(label.text(), std::nullopt);
}

TEST_F(Labels, AreMeasuredWithThePhonesFonts)
{
    const auto measure = std::make_shared<FakeTextMeasure>();
    Phone::current().textMeasure = measure;
    const auto label = labelOf("twelve bytes", 0);
    label->setFont(UIFont::fontWithName_size("HelveticaNeue-Light", 14));
    EXPECT_EQ(label->sizeThatFits(5), (CGSize { 5, 30 }));
    EXPECT_EQ(label->sizeThatFits(0), (CGSize { 12, 10 }));
    EXPECT_EQ(measure->asked,
        (std::vector<std::string> {
            "twelve bytes HelveticaNeue-Light 14 5", "twelve bytes HelveticaNeue-Light 14 0" }));
}

TEST_F(Labels, NeverAskForMoreLinesThanTheyMayHave)
{
    Phone::current().textMeasure = std::make_shared<FakeTextMeasure>();
    const std::string text(100, 'x');
    EXPECT_EQ(labelOf(text, 1)->sizeThatFits(10), (CGSize { 10, 10 }));
    EXPECT_EQ(labelOf(text, 3)->sizeThatFits(10), (CGSize { 10, 30 }));
    EXPECT_EQ(labelOf(text, 30)->sizeThatFits(10), (CGSize { 10, 100 }));
    EXPECT_EQ(labelOf(text, 0)->sizeThatFits(10), (CGSize { 10, 100 }));
    EXPECT_EQ(labelOf(text, -1)->sizeThatFits(10), (CGSize { 10, 100 }));
}

TEST_F(Labels, AreEstimatedWhereThePhoneCannotMeasure)
{
    EXPECT_EQ(UIFont::systemFontOfSize(17).lineHeight(), 21);
    EXPECT_EQ(UIFont::systemFontOfSize(12).lineHeight(), 15);
    EXPECT_EQ(labelOf("Title")->sizeThatFits(0), (CGSize { 43, 21 }));
    EXPECT_EQ(labelOf("Title")->sizeThatFits(20), (CGSize { 20, 21 }));
    EXPECT_EQ(labelOf("Title", 0)->sizeThatFits(20), (CGSize { 20, 63 }));
    EXPECT_EQ(labelOf("one\ntwo\n", 0)->sizeThatFits(0), (CGSize { 26, 63 }));
    EXPECT_EQ(labelOf("📱", 0)->sizeThatFits(0), (CGSize { 17, 21 }));
}

TEST_F(Labels, WithoutATextHaveNoSize)
{
    Phone::current().textMeasure = std::make_shared<FakeTextMeasure>();
    EXPECT_EQ(labelOf("")->sizeThatFits(100), CGSize());
    EXPECT_EQ(labelOf("", 0)->sizeThatFits(0), CGSize());
}

TEST(ImageViews, AreAsLargeAsTheImageThatTheyWereMadeOf)
{
    const auto image = UIImage::imageWithBitmap(std::make_shared<const Bitmap>(Bitmap { 4, 2, Bytes(32) }), 2);
    const UIImageView view(image);
    EXPECT_EQ(view.frame(), (CGRect { 0, 0, 2, 1 }));
    EXPECT_EQ(view.image(), image);
    EXPECT_FALSE(view.isUserInteractionEnabled());
    EXPECT_EQ(UIImageView(nullptr).frame(), CGRect());
}

TEST(ImageViews, KeepTheirFrameWhenTheImageChanges)
{
    UIImageView view;
    view.setFrame({ 1, 2, 3, 4 });
    view.setImage(UIImage::imageWithBitmap(std::make_shared<const Bitmap>(Bitmap { 4, 2, Bytes(32) }), 1));
    EXPECT_EQ(view.frame(), (CGRect { 1, 2, 3, 4 }));
    view.setImage(nullptr);
    EXPECT_EQ(view.image(), nullptr);
}

} // namespace
