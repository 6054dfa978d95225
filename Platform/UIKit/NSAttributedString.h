#pragma once

#include "Runtime/NSObject.h"
#include "UIKit/UIFont.h"
#include "UIKit/UIImage.h"

#include <optional>
#include <string>
#include <vector>

struct NSParagraphStyle {
    /// Points between the lines.
    double lineSpacing = 0;
    NSTextAlignment alignment = NSTextAlignment::Natural;
    bool operator==(const NSParagraphStyle&) const = default;
};

/// A picture that stands in a text as one character; without a picture the character stands alone.
struct NSTextAttachment {
    std::shared_ptr<UIImage> image;
    bool operator==(const NSTextAttachment&) const = default;
};

/// The attributes of a run of text. What is not set is absent.
struct TextAttributes {
    std::optional<UIFont> font;
    std::optional<NSParagraphStyle> paragraphStyle;
    /// Points between the characters; the null value is a kerning that is present and says nothing.
    std::optional<Value> kern;
    std::optional<NSTextAttachment> attachment;

    bool operator==(const TextAttributes&) const = default;
};

/// A range of a text, counted in UTF-16 units.
struct NSRange {
    std::size_t location = 0;
    std::size_t length = 0;
    bool operator==(const NSRange&) const = default;
};

/// A text whose runs carry attributes. Ranges are cut to the text.
class NSAttributedString final : public NSObject {
    NS_CLASS(NSAttributedString, NSObject)
public:
    struct Run {
        NSRange range;
        TextAttributes attributes;
        bool operator==(const Run&) const = default;
    };

    NSAttributedString() = default;
    static std::shared_ptr<NSAttributedString> attributedStringWithAttachment(NSTextAttachment attachment);

    const std::string& string() const { return _string; }
    /// In UTF-16 units.
    std::size_t length() const { return _length; }
    /// The runs in order, together as long as the text.
    const std::vector<Run>& runs() const { return _runs; }

    void append(const std::string& text, const TextAttributes& attributes);
    void setFont(const UIFont& font, NSRange range);
    void setParagraphStyle(const NSParagraphStyle& style, NSRange range);

    static constexpr const char* attachmentCharacter = "\xEF\xBF\xBC";

private:
    template <class Change>
    void change(NSRange range, Change apply);
    void splitAt(std::size_t location);

    std::string _string;
    std::size_t _length = 0;
    std::vector<Run> _runs;
};
