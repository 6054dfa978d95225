#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDBluetoothCell.h"
#include "TDBluetoothDevicesController.h"
#include "TDImageCell.h"
#include "TDPageStyle.h"

namespace {

constexpr double widths[] = { 320, 375, 768 };

class BannerCell : public PageTest {
protected:
    static Row rowWith(Dictionary properties)
    {
        const Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Row", nullptr, "", "", nullptr, PSCellType::StaticText, nullptr);
        for (const auto& [key, value] : properties)
            row->setProperty_forKey(value, key);
        return row;
    }

    static std::shared_ptr<TDBluetoothCell> makeCell(Dictionary properties)
    {
        auto cell = std::make_shared<TDBluetoothCell>();
        EXPECT_TRUE(cell->initWithSpecifier(rowWith(std::move(properties))));
        return cell;
    }

    static std::shared_ptr<UILabel> labelOf(UIView& cell)
    {
        return std::dynamic_pointer_cast<UILabel>(cell.viewWithTag(121213));
    }

    static NSAttributedString::Run run(std::size_t location, std::size_t length, bool kern, std::optional<UIFont> font)
    {
        NSAttributedString::Run expected { { location, length }, {} };
        if (kern)
            expected.attributes.kern = Value();
        if (font)
            expected.attributes.paragraphStyle = NSParagraphStyle { 4, NSTextAlignment::Center };
        expected.attributes.font = std::move(font);
        return expected;
    }

    const UIFont titleFont = UIFont::systemFontOfSize(18);
    const UIFont subTitleFont = UIFont::fontWithName_size("HelveticaNeue-Light", 14);
};

TEST_F(BannerCell, IsOneHundredAndTenPointsHighAtAnyWidth)
{
    const auto cell = makeCell({});
    for (const double width : { 0.0, 1.0, 320.0, 1e9 })
        EXPECT_EQ(cell->preferredHeightForWidth(width), 110);
}

TEST_F(BannerCell, ViewTreeAtThreeWidths)
{
    const auto cell = makeCell({ { "title", "Title" }, { "subTitle", "Sub" } });
    for (const double width : widths) {
        cell->setFrame({ 0, 0, width, 110 });
        cell->layoutIfNeeded();
        const auto panel = cell->viewWithTag(121212);
        ASSERT_TRUE(panel);
        EXPECT_EQ(panel->superview(), cell);
        EXPECT_EQ(panel->frame(), (CGRect { 0, 0, width, 80 }));
        EXPECT_EQ(panel->backgroundColor(), accentColor);
        const auto label = labelOf(*cell);
        EXPECT_EQ(label->superview(), panel);
        EXPECT_EQ(label->frame(), (CGRect { 0, 0, width, 80 }));
        EXPECT_EQ(label->textAlignment(), NSTextAlignment::Center);
        EXPECT_EQ(label->textColor(), (UIColor { 1, 1, 1, 0.9F }));
        EXPECT_EQ(label->numberOfLines(), 0);
        EXPECT_EQ(cell->backgroundColor(), UIColor::clearColor());
    }
}

TEST_F(BannerCell, PanelLeavesAStripOfThirtyPointsAtAnyHeight)
{
    const auto cell = makeCell({ { "title", "Title" }, { "subTitle", "Sub" } });
    for (const double height : { 60.0, 110.0, 200.0 }) {
        cell->setFrame({ 0, 0, 320, height });
        cell->layoutIfNeeded();
        EXPECT_EQ(cell->viewWithTag(121212)->frame(), (CGRect { 0, 0, 320, height - 30 }));
        EXPECT_EQ(labelOf(*cell)->frame(), (CGRect { 0, 0, 320, height - 30 }));
    }
}

TEST_F(BannerCell, TextHasTheIconTheTitleAndTheSubtitleInUtf16Ranges)
{
    phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "Icon.png"), phone.png(20, 10));
    const auto cell = makeCell({ { "title", "Täg😀" }, { "subTitle", "Zwei" }, { "iconImage", "Icon" } });
    const auto text = labelOf(*cell)->attributedText();
    EXPECT_EQ(text->string(), "\uFFFC\nTäg😀\nZwei");
    ASSERT_EQ(text->runs().size(), 4U);
    EXPECT_EQ(text->runs()[0].range, (NSRange { 0, 1 }));
    ASSERT_TRUE(text->runs()[0].attributes.attachment);
    EXPECT_EQ(text->runs()[0].attributes.attachment->image->size(), (CGSize { 20, 10 }));
    EXPECT_EQ(text->runs()[1], run(1, 1, true, std::nullopt));
    EXPECT_EQ(text->runs()[2], run(2, 5, true, titleFont));
    EXPECT_EQ(text->runs()[3], run(7, 5, true, subTitleFont));
}

TEST_F(BannerCell, AbsentSubtitleIsPrintedAsNullWhileItsRangeIsThatOfNothing)
{
    const auto cell = makeCell({ { "title", "Title" } });
    const auto text = labelOf(*cell)->attributedText();
    EXPECT_EQ(text->string(), "\uFFFC\nTitle\n(null)");
    ASSERT_EQ(text->runs().size(), 5U);
    EXPECT_EQ(text->runs()[2], run(2, 5, true, titleFont));
    EXPECT_EQ(text->runs()[3], run(7, 1, true, subTitleFont));
    EXPECT_EQ(text->runs()[4], run(8, 6, true, std::nullopt));
}

TEST_F(BannerCell, IconNameWithoutAnImageLeavesTheAttachmentCharacter)
{
    const auto cell = makeCell({ { "title", "Title" }, { "iconImage", "nothing" } });
    const auto text = labelOf(*cell)->attributedText();
    EXPECT_TRUE(text->string().starts_with("\uFFFC"));
    ASSERT_TRUE(text->runs()[0].attributes.attachment);
    EXPECT_EQ(text->runs()[0].attributes.attachment->image, nullptr);
}

TEST_F(BannerCell, ChangedSubtitleShowsOnlyAfterAnUpdate)
{
    const auto cell = makeCell({ { "title", "Title" }, { "subTitle", "Old" } });
    cell->setSubTitle("New");
    EXPECT_EQ(labelOf(*cell)->text(), "\uFFFC\nTitle\nOld");
    cell->updateData();
    EXPECT_EQ(labelOf(*cell)->text(), "\uFFFC\nTitle\nNew");
}

TEST_F(BannerCell, UpdateGivesTheLabelAsManyLinesAsItsTextNeeds)
{
    const auto cell = makeCell({});
    labelOf(*cell)->setNumberOfLines(1);
    cell->updateData();
    EXPECT_EQ(labelOf(*cell)->numberOfLines(), 0);
}

TEST_F(BannerCell, PropertiesOfAnotherTypeCountAsAbsent)
{
    const auto cell = makeCell({ { "title", 5 }, { "subTitle", Array {} }, { "iconImage", true } });
    EXPECT_EQ(labelOf(*cell)->text(), "\uFFFC\n(null)\n(null)");
}

TEST_F(BannerCell, ImageCellViewTreeAtThreeWidths)
{
    const auto image = UIImage::imageWithData(phone.png(4, 4));
    const auto cell = std::make_shared<TDImageCell>();
    ASSERT_TRUE(cell->initWithSpecifier(rowWith({ { "title", "Caption" }, { "iconImage", image } })));
    EXPECT_EQ(cell->backgroundColor(), UIColor::whiteColor());
    EXPECT_EQ(cell->backgroundView(), nullptr);
    for (const double width : widths) {
        EXPECT_EQ(cell->preferredHeightForWidth(width), 127);
        cell->setFrame({ 0, 0, width, 127 });
        cell->layoutIfNeeded();
        const auto caption = std::dynamic_pointer_cast<UILabel>(cell->viewWithTag(10011));
        const auto picture = std::dynamic_pointer_cast<UIImageView>(cell->viewWithTag(10012));
        ASSERT_TRUE(caption && picture);
        EXPECT_EQ(caption->superview(), cell);
        EXPECT_EQ(picture->superview(), cell);
        EXPECT_EQ(caption->frame(), (CGRect { 8, 2, width, 18 }));
        EXPECT_EQ(picture->frame(), (CGRect { 0, 20, width, 107 }));
        EXPECT_EQ(caption->text(), "Caption");
        EXPECT_EQ(caption->font(), UIFont::systemFontOfSize(18));
        EXPECT_EQ(caption->backgroundColor(), UIColor::clearColor());
        EXPECT_EQ(caption->textColor(), UIColor::darkGrayColor());
        EXPECT_EQ(picture->image(), image);
    }
}

TEST_F(BannerCell, ImageCellWithoutPropertiesIsEmpty)
{
    const auto cell = std::make_shared<TDImageCell>();
    ASSERT_TRUE(cell->initWithSpecifier(rowWith({})));
    EXPECT_EQ(std::dynamic_pointer_cast<UILabel>(cell->viewWithTag(10011))->text(), std::nullopt);
    EXPECT_EQ(std::dynamic_pointer_cast<UIImageView>(cell->viewWithTag(10012))->image(), nullptr);
}

TEST_F(BannerCell, SimInfoCellHasADetailLabelWhateverStyleIsAskedFor)
{
    for (const auto style :
        { UITableViewCellStyle::Default, UITableViewCellStyle::Value1, UITableViewCellStyle::Subtitle }) {
        const auto cell = std::make_shared<TDSIMInfoTableCell>();
        ASSERT_TRUE(cell->initWithStyle_reuseIdentifier_specifier(style, "reuse", rowWith({})));
        EXPECT_EQ(cell->style(), UITableViewCellStyle::Subtitle);
        EXPECT_EQ(cell->reuseIdentifier(), "reuse");
        cell->detailTextLabel()->setText("detail");
        for (const double width : widths) {
            cell->setFrame({ 0, 0, width, 60 });
            cell->layoutIfNeeded();
            EXPECT_GE(cell->detailTextLabel()->frame().y, cell->textLabel()->frame().maxY());
        }
    }
}

} // namespace
