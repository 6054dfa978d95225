#include "UIKit/NSAttributedString.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace {

const UIFont large = UIFont::systemFontOfSize(18);
const UIFont light = UIFont::fontWithName_size("HelveticaNeue-Light", 14);
constexpr NSParagraphStyle centred { 4, NSTextAlignment::Center };

/// The runs, a word each: where it begins, how long it is, "L" for the large font, "l" for the light one, "c" for
/// centred.
std::string runsOf(const NSAttributedString& text)
{
    std::string runs;
    for (const NSAttributedString::Run& run : text.runs()) {
        runs += runs.empty() ? "" : " ";
        runs += std::to_string(run.range.location) + "+" + std::to_string(run.range.length);
        runs += run.attributes.font == large ? "L" : run.attributes.font == light ? "l" : "";
        runs += run.attributes.paragraphStyle == centred ? "c" : "";
    }
    return runs;
}

std::shared_ptr<NSAttributedString> textOf(const std::string& text)
{
    auto string = std::make_shared<NSAttributedString>();
    string->append(text, {});
    return string;
}

TEST(AttributedStrings, BeginEmpty)
{
    const NSAttributedString text;
    EXPECT_EQ(text.string(), "");
    EXPECT_EQ(text.length(), 0U);
    EXPECT_EQ(runsOf(text), "");
}

TEST(AttributedStrings, GrowByRunsWithAttributesOfTheirOwn)
{
    NSAttributedString text;
    TextAttributes attributes;
    attributes.font = large;
    text.append("one", attributes);
    text.append("", attributes);
    text.append(" two", {});
    EXPECT_EQ(text.string(), "one two");
    EXPECT_EQ(runsOf(text), "0+3L 3+4");
}

TEST(AttributedStrings, CountInUtf16Units)
{
    NSAttributedString text;
    text.append("📱 Zürich", {});
    text.append("日本", {});
    EXPECT_EQ(text.length(), 11U);
    EXPECT_EQ(runsOf(text), "0+9 9+2");
    text.setFont(large, { 0, 2 });
    EXPECT_EQ(runsOf(text), "0+2L 2+7 9+2");
}

TEST(AttributedStrings, HoldAPictureAsOneCharacter)
{
    const auto image = std::make_shared<UIImage>();
    const auto text = NSAttributedString::attributedStringWithAttachment({ image });
    EXPECT_EQ(text->string(), NSAttributedString::attachmentCharacter);
    EXPECT_EQ(text->length(), 1U);
    ASSERT_EQ(text->runs().size(), 1U);
    EXPECT_EQ(text->runs()[0].attributes.attachment, NSTextAttachment { image });
}

TEST(AttributedStrings, HoldAnAttachmentWithoutAPicture)
{
    const auto text = NSAttributedString::attributedStringWithAttachment({});
    EXPECT_EQ(text->length(), 1U);
    EXPECT_EQ(text->runs()[0].attributes.attachment, NSTextAttachment {});
}

TEST(AttributedStrings, TellAKerningThatSaysNothingFromNone)
{
    NSAttributedString text;
    TextAttributes attributes;
    attributes.kern = Value();
    text.append("a", attributes);
    text.append("b", {});
    EXPECT_EQ(text.runs()[0].attributes.kern, std::optional(Value()));
    EXPECT_EQ(text.runs()[1].attributes.kern, std::nullopt);
}

TEST(AttributedStrings, AreSplitWhereAnAttributeBeginsAndEnds)
{
    const auto text = textOf("0123456789");
    text->setFont(large, { 2, 3 });
    EXPECT_EQ(runsOf(*text), "0+2 2+3L 5+5");
    text->setFont(large, { 0, 10 });
    EXPECT_EQ(runsOf(*text), "0+2L 2+3L 5+5L");
}

TEST(AttributedStrings, KeepOtherAttributesWhereOneOverlapsThem)
{
    const auto text = textOf("0123456789");
    text->setFont(large, { 0, 6 });
    text->setParagraphStyle(centred, { 4, 4 });
    EXPECT_EQ(runsOf(*text), "0+4L 4+2Lc 6+2c 8+2");
}

TEST(AttributedStrings, TakeTheLaterOfTwoOverlappingFonts)
{
    const auto text = textOf("0123456789");
    text->setFont(large, { 0, 6 });
    text->setFont(light, { 4, 4 });
    EXPECT_EQ(runsOf(*text), "0+4L 4+2l 6+2l 8+2");
    text->setFont(large, { 5, 2 });
    EXPECT_EQ(runsOf(*text), "0+4L 4+1l 5+1L 6+1L 7+1l 8+2");
}

TEST(AttributedStrings, ChangeAcrossRuns)
{
    NSAttributedString text;
    text.append("abc", {});
    text.append("def", {});
    text.append("ghi", {});
    text.setFont(large, { 2, 5 });
    EXPECT_EQ(runsOf(text), "0+2 2+1L 3+3L 6+1L 7+2");
}

TEST(AttributedStrings, CutRangesThatReachPastTheEnd)
{
    for (const std::size_t length : { std::size_t { 5 }, std::size_t { 100 }, SIZE_MAX - 6, SIZE_MAX - 5, SIZE_MAX }) {
        const auto text = textOf("0123456789");
        text->setFont(large, { 6, length });
        EXPECT_EQ(runsOf(*text), "0+6 6+4L") << length;
    }
}

TEST(AttributedStrings, IgnoreRangesThatAreEmptyOrPastTheEnd)
{
    for (const NSRange& range : { NSRange { 0, 0 }, { 5, 0 }, { 10, 0 }, { 10, 1 }, { 11, 5 }, { SIZE_MAX, 1 },
             { SIZE_MAX, SIZE_MAX }, { SIZE_MAX, 2 } }) {
        const auto text = textOf("0123456789");
        text->setFont(large, range);
        text->setParagraphStyle(centred, range);
        std::size_t length = 0;
        for (const NSAttributedString::Run& run : text->runs()) {
            EXPECT_EQ(run.attributes, TextAttributes()) << range.location;
            length += run.range.length;
        }
        EXPECT_EQ(length, 10U);
    }
    const auto empty = std::make_shared<NSAttributedString>();
    empty->setFont(large, { 0, 10 });
    EXPECT_EQ(runsOf(*empty), "");
}

TEST(AttributedStrings, MayBeSplitInsideOfACharacter)
{
    const auto text = textOf("📱");
    text->setFont(large, { 1, 1 });
    EXPECT_EQ(runsOf(*text), "0+1 1+1L");
    EXPECT_EQ(text->string(), "📱");
}

TEST(AttributedStrings, CountABrokenByteAsOneUnit)
{
    const auto text = textOf("\xFF\xC3");
    EXPECT_EQ(text->length(), 2U);
}

TEST(AttributedStrings, GrowAfterAttributesWereSet)
{
    const auto text = textOf("abc");
    text->setFont(large, { 0, 100 });
    text->append("def", {});
    EXPECT_EQ(runsOf(*text), "0+3L 3+3");
}

} // namespace
