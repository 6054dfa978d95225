#include "UIKit/NSAttributedString.h"

#include "Foundation/NSString.h"

#include <algorithm>

NS_IMPLEMENTATION(NSAttributedString)

std::shared_ptr<NSAttributedString> NSAttributedString::attributedStringWithAttachment(NSTextAttachment attachment)
{
    auto string = std::make_shared<NSAttributedString>();
    TextAttributes attributes;
    attributes.attachment = std::move(attachment);
    string->append(attachmentCharacter, attributes);
    return string;
}

void NSAttributedString::append(const std::string& text, const TextAttributes& attributes)
{
    const std::size_t length = utf16Length(text);
    if (length == 0)
        return;
    _string += text;
    _runs.push_back({ { _length, length }, attributes });
    _length += length;
}

void NSAttributedString::splitAt(std::size_t location)
{
    for (std::size_t i = 0; i < _runs.size(); ++i) {
        NSRange& range = _runs[i].range;
        if (location <= range.location || location >= range.location + range.length)
            continue;
        Run rest = _runs[i];
        rest.range = { location, range.location + range.length - location };
        range.length = location - range.location;
        _runs.insert(_runs.begin() + static_cast<std::ptrdiff_t>(i) + 1, rest);
        return;
    }
}

template <class Change>
void NSAttributedString::change(NSRange range, Change apply)
{
    const std::size_t begin = std::min(range.location, _length);
    const std::size_t end = begin + std::min(range.length, _length - begin);
    splitAt(begin);
    splitAt(end);
    for (Run& run : _runs) {
        if (run.range.location >= begin && run.range.location < end)
            apply(run.attributes);
    }
}

void NSAttributedString::setFont(const UIFont& font, NSRange range)
{
    change(range, [&](TextAttributes& attributes) { attributes.font = font; });
}

void NSAttributedString::setParagraphStyle(const NSParagraphStyle& style, NSRange range)
{
    change(range, [&](TextAttributes& attributes) { attributes.paragraphStyle = style; });
}
