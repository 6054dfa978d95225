#include "Platform/PhoneTest.h"
#include "UIKit/UITableViewCell.h"

#include <sstream>

namespace {

std::string textOf(const CGRect& frame)
{
    std::ostringstream text;
    text << frame.x << "," << frame.y << " " << frame.width << "x" << frame.height;
    return text.str();
}

/// The frames of the parts that show something, one after the other.
std::string framesOf(const UITableViewCell& cell)
{
    std::string frames = textOf(cell.frame());
    if (cell.imageView()->image())
        frames += " | image " + textOf(cell.imageView()->frame());
    frames += " | text " + textOf(cell.textLabel()->frame());
    if (cell.detailTextLabel())
        frames += " | detail " + textOf(cell.detailTextLabel()->frame());
    if (cell.accessoryView())
        frames += " | accessory " + textOf(cell.accessoryView()->frame());
    return frames;
}

/// Texts are estimated here: a character of the system font is 8.5 points wide and 21 high.
class TableCells : public PhoneTest {
protected:
    using Style = UITableViewCellStyle;

    static std::shared_ptr<UITableViewCell> cellOf(
        Style style, const std::string& text = "Title", const std::string& detail = "Detail")
    {
        auto cell = std::make_shared<UITableViewCell>();
        cell->initWithStyle_reuseIdentifier(style, "cell");
        cell->textLabel()->setText(text);
        if (cell->detailTextLabel())
            cell->detailTextLabel()->setText(detail);
        return cell;
    }
    std::shared_ptr<UIImage> imageOf(int width, int height) const
    {
        return UIImage::imageWithData(phone.png(width, height), 1);
    }
    static std::string laidOut(UITableViewCell& cell, double width)
    {
        cell.setFrame({ 0, 0, width, cell.heightThatFits(width) });
        cell.layoutIfNeeded();
        return framesOf(cell);
    }
};

TEST_F(TableCells, HaveThePartsOfTheirStyle)
{
    for (const Style style : { Style::Default, Style::Value1, Style::Value2, Style::Subtitle }) {
        const auto cell = cellOf(style);
        EXPECT_EQ(cell->style(), style);
        EXPECT_EQ(cell->reuseIdentifier(), "cell");
        EXPECT_EQ(cell->imageView()->superview(), cell);
        EXPECT_EQ(cell->textLabel()->superview(), cell);
        EXPECT_EQ(cell->detailTextLabel() != nullptr, style != Style::Default);
        EXPECT_EQ(cell->subviews().size(), style == Style::Default ? 2U : 3U);
        EXPECT_EQ(cell->accessoryType(), UITableViewCellAccessoryType::None);
        EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::Default);
    }
}

TEST_F(TableCells, BeforeTheyAreInitialisedHaveNoPartsAndCanBeLaidOut)
{
    const auto cell = std::make_shared<UITableViewCell>();
    cell->setFrame({ 0, 0, 320, 44 });
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->heightThatFits(320), 44);
    EXPECT_TRUE(cell->subviews().empty());
}

TEST_F(TableCells, WithATextAlone)
{
    const auto cell = cellOf(Style::Default);
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | text 16,11.5 288x21");
    EXPECT_EQ(laidOut(*cell, 375), "0,0 375x44 | text 16,11.5 343x21");
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x44 | text 20,11.5 728x21");
}

TEST_F(TableCells, WithAnIcon)
{
    const auto cell = cellOf(Style::Default);
    cell->imageView()->setImage(imageOf(29, 29));
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | image 16,7.5 29x29 | text 60,11.5 244x21");
    EXPECT_EQ(laidOut(*cell, 375), "0,0 375x44 | image 16,7.5 29x29 | text 60,11.5 299x21");
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x44 | image 20,7.5 29x29 | text 64,11.5 684x21");
}

TEST_F(TableCells, WithAnAccessory)
{
    const auto cell = cellOf(Style::Default);
    cell->setAccessoryType(UITableViewCellAccessoryType::DisclosureIndicator);
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | text 16,11.5 272x21");
    cell->setAccessoryType(UITableViewCellAccessoryType::Checkmark);
    EXPECT_EQ(laidOut(*cell, 375), "0,0 375x44 | text 16,11.5 321x21");
    cell->setAccessoryType(UITableViewCellAccessoryType::DetailDisclosureButton);
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x44 | text 20,11.5 678x21");
}

TEST_F(TableCells, WithAnAccessoryViewInPlaceOfTheAccessory)
{
    const auto cell = cellOf(Style::Default);
    cell->setAccessoryType(UITableViewCellAccessoryType::DisclosureIndicator);
    cell->setAccessoryView(std::make_shared<UISwitch>());
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | text 16,11.5 229x21 | accessory 253,6.5 51x31");
    EXPECT_EQ(laidOut(*cell, 375), "0,0 375x44 | text 16,11.5 284x21 | accessory 308,6.5 51x31");
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x44 | text 20,11.5 669x21 | accessory 697,6.5 51x31");
    cell->setAccessoryView(nullptr);
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | text 16,11.5 272x21");
    EXPECT_EQ(cell->subviews().size(), 2U);
}

TEST_F(TableCells, WithAValueBehindTheText)
{
    for (const Style style : { Style::Value1, Style::Value2 }) {
        const auto cell = cellOf(style);
        EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | text 16,11.5 43x21 | detail 67,11.5 237x21");
        EXPECT_EQ(laidOut(*cell, 375), "0,0 375x44 | text 16,11.5 43x21 | detail 67,11.5 292x21");
        EXPECT_EQ(laidOut(*cell, 768), "0,0 768x44 | text 20,11.5 43x21 | detail 71,11.5 677x21");
        EXPECT_EQ(cell->detailTextLabel()->textAlignment(), NSTextAlignment::Right);
    }
}

TEST_F(TableCells, WithAValueIconAndAccessory)
{
    const auto cell = cellOf(Style::Value1);
    cell->imageView()->setImage(imageOf(29, 29));
    cell->setAccessoryType(UITableViewCellAccessoryType::DisclosureIndicator);
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | image 16,7.5 29x29 | text 60,11.5 43x21 | detail 111,11.5 177x21");
    EXPECT_EQ(laidOut(*cell, 375), "0,0 375x44 | image 16,7.5 29x29 | text 60,11.5 43x21 | detail 111,11.5 232x21");
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x44 | image 20,7.5 29x29 | text 64,11.5 43x21 | detail 115,11.5 617x21");
}

TEST_F(TableCells, WithASubtitleBelowTheText)
{
    const auto cell = cellOf(Style::Subtitle);
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x60 | text 16,11 288x21 | detail 16,34 288x15");
    EXPECT_EQ(laidOut(*cell, 375), "0,0 375x60 | text 16,11 343x21 | detail 16,34 343x15");
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x60 | text 20,11 728x21 | detail 20,34 728x15");
    EXPECT_EQ(cell->detailTextLabel()->font(), UIFont::systemFontOfSize(12));
}

TEST_F(TableCells, WithASubtitleIconAndAccessory)
{
    const auto cell = cellOf(Style::Subtitle);
    cell->imageView()->setImage(imageOf(29, 29));
    cell->setAccessoryType(UITableViewCellAccessoryType::Checkmark);
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x60 | image 16,15.5 29x29 | text 60,11 222x21 | detail 60,34 222x15");
    EXPECT_EQ(laidOut(*cell, 375), "0,0 375x60 | image 16,15.5 29x29 | text 60,11 277x21 | detail 60,34 277x15");
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x60 | image 20,15.5 29x29 | text 64,11 662x21 | detail 64,34 662x15");
}

TEST_F(TableCells, WithOneOfTwoTextsCentreIt)
{
    EXPECT_EQ(
        laidOut(*cellOf(Style::Subtitle, "Title", ""), 320), "0,0 320x44 | text 16,11.5 288x21 | detail 16,32.5 288x0");
    EXPECT_EQ(laidOut(*cellOf(Style::Subtitle, "", "Detail"), 320),
        "0,0 320x44 | text 16,14.5 288x0 | detail 16,14.5 288x15");
    EXPECT_EQ(
        laidOut(*cellOf(Style::Value1, "", "Detail"), 320), "0,0 320x44 | text 16,22 0x0 | detail 24,11.5 280x21");
    EXPECT_EQ(laidOut(*cellOf(Style::Default, ""), 320), "0,0 320x44 | text 16,22 288x0");
}

TEST_F(TableCells, GrowWithATextOfManyLines)
{
    const auto cell = cellOf(Style::Default, std::string(100, 'x'));
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | text 16,11.5 288x21");
    cell->textLabel()->setNumberOfLines(0);
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x85 | text 16,11 288x63");
    EXPECT_EQ(laidOut(*cell, 768), "0,0 768x64 | text 20,11 728x42");
}

TEST_F(TableCells, LeaveNoPlaceForAValueBehindATextThatFillsTheLine)
{
    EXPECT_EQ(laidOut(*cellOf(Style::Value1, std::string(100, 'x')), 320),
        "0,0 320x44 | text 16,11.5 288x21 | detail 304,11.5 0x21");
}

TEST_F(TableCells, NarrowerThanTheirMarginsHaveNoPlaceForTexts)
{
    for (const Style style : { Style::Default, Style::Value1, Style::Subtitle }) {
        const auto cell = cellOf(style);
        cell->setAccessoryView(std::make_shared<UISwitch>());
        cell->imageView()->setImage(imageOf(29, 29));
        for (const double width : { 0.0, 1.0, 50.0 }) {
            laidOut(*cell, width);
            EXPECT_EQ(cell->textLabel()->frame().width, 0);
            EXPECT_TRUE(!cell->detailTextLabel() || cell->detailTextLabel()->frame().width == 0);
            EXPECT_GE(cell->frame().height, 44);
        }
    }
}

TEST_F(TableCells, HaveWiderMarginsOnWideScreens)
{
    EXPECT_EQ(UITableViewCell::horizontalMargin(320), 16);
    EXPECT_EQ(UITableViewCell::horizontalMargin(413.5), 16);
    EXPECT_EQ(UITableViewCell::horizontalMargin(414), 20);
    EXPECT_EQ(UITableViewCell::horizontalMargin(768), 20);
}

TEST_F(TableCells, CentreASmallImageInTheColumnOfIcons)
{
    const auto cell = cellOf(Style::Default);
    cell->imageView()->setImage(imageOf(20, 10));
    EXPECT_EQ(laidOut(*cell, 320), "0,0 320x44 | image 20.5,17 20x10 | text 60,11.5 244x21");
}

TEST_F(TableCells, KeepTheProportionsOfALargeImage)
{
    const auto cell = cellOf(Style::Default);
    for (const auto& [width, height] : { std::pair(400, 200), { 200, 400 }, { 1000, 1 }, { 40, 40 } }) {
        cell->imageView()->setImage(imageOf(width, height));
        laidOut(*cell, 320);
        const CGRect& shown = cell->imageView()->frame();
        EXPECT_NEAR(shown.width * height, shown.height * width, 1e-6) << width << "x" << height;
        EXPECT_GE(shown.x, 16);
        EXPECT_GE(shown.y, 0) << width << "x" << height;
        EXPECT_LE(shown.maxY(), cell->frame().height) << width << "x" << height;
        EXPECT_LE(shown.maxX(), cell->textLabel()->frame().x) << width << "x" << height;
    }
}

TEST_F(TableCells, ReplaceAnAccessoryView)
{
    const auto cell = cellOf(Style::Default);
    const auto before = std::make_shared<UISwitch>();
    const auto after = std::make_shared<UISwitch>();
    cell->setAccessoryView(before);
    cell->setAccessoryView(after);
    EXPECT_EQ(before->superview(), nullptr);
    EXPECT_EQ(after->superview(), cell);
    cell->setAccessoryView(after);
    EXPECT_EQ(after->superview(), cell);
    EXPECT_EQ(cell->subviews().size(), 3U);
}

TEST_F(TableCells, AreNotKeptByTheirParts)
{
    auto cell = cellOf(Style::Subtitle);
    cell->setAccessoryView(std::make_shared<UISwitch>());
    cell->setBackgroundView(std::make_shared<UIView>());
    const std::weak_ptr<UITableViewCell> watched = cell;
    const auto label = cell->textLabel();
    cell.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(label->superview(), nullptr);
}

} // namespace
