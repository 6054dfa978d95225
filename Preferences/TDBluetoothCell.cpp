#include "TDBluetoothCell.h"

#include "Foundation/NSString.h"
#include "TDPageStyle.h"

NS_IMPLEMENTATION(TDBluetoothCell, NS_METHOD(subTitle), NS_METHOD(setSubTitle), NS_METHOD(iconImage),
    NS_METHOD(setIconImage), NS_METHOD(updateData))

namespace {

constexpr const char* iconImageKey = "iconImage";
constexpr long panelTag = 121212;
constexpr long labelTag = 121213;
constexpr double cellHeight = 110.0;
/// The clear strip below the panel.
constexpr double stripHeight = 30.0;
constexpr float textAlpha = 0.9F;
constexpr double lineSpacing = 4.0;
constexpr double titleFontSize = 18.0;
constexpr const char* subTitleFontName = "HelveticaNeue-Light";
constexpr double subTitleFontSize = 14.0;

std::size_t lengthOf(const std::optional<std::string>& text)
{
    return text ? utf16Length(*text) : 0;
}

} // namespace

bool TDBluetoothCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row)
{
    if (!Super::initWithStyle_reuseIdentifier_specifier(style, std::move(reuseIdentifier), row))
        return false;
    setBackgroundColor(UIColor::clearColor());
    addPanel();
    if (row) {
        setTitle(row->propertyForKey(titleKey).optionalString());
        setSubTitle(row->propertyForKey(subTitleKey).optionalString());
        setIconImage(row->propertyForKey(iconImageKey).optionalString());
    }
    updateData();
    return true;
}

void TDBluetoothCell::addPanel()
{
    const auto panel = std::make_shared<UIView>();
    panel->setTag(panelTag);
    panel->setBackgroundColor(accentColor);
    addSubview(panel);
    const auto label = std::make_shared<UILabel>();
    label->setTag(labelTag);
    label->setTextAlignment(NSTextAlignment::Center);
    label->setTextColor(UIColor::whiteColor().colorWithAlphaComponent(textAlpha));
    panel->addSubview(label);
}

void TDBluetoothCell::updateData()
{
    const auto bundle = NSBundle::bundleForClass(isa());
    const auto icon = _iconImage ? UIImage::imageNamed_inBundle(*_iconImage, *bundle) : nullptr;
    const auto text = NSAttributedString::attributedStringWithAttachment({ icon });
    const std::size_t titleStart = text->length() + 1;

    TextAttributes attributes;
    attributes.kern = Value();
    text->append(stringWithFormat("\n%@\n%@", { title(), _subTitle }), attributes);

    // An absent text is printed as the placeholder for null but counts as empty here, so its range does not cover the
    // words.
    const NSParagraphStyle style { lineSpacing, NSTextAlignment::Center };
    const NSRange titleRange { titleStart, lengthOf(title()) };
    text->setFont(UIFont::systemFontOfSize(titleFontSize), titleRange);
    text->setParagraphStyle(style, titleRange);
    const NSRange subTitleRange { titleStart + lengthOf(title()), lengthOf(_subTitle) + 1 };
    text->setFont(UIFont::fontWithName_size(subTitleFontName, subTitleFontSize), subTitleRange);
    text->setParagraphStyle(style, subTitleRange);

    const auto panel = viewWithTag(panelTag);
    if (const auto label = panel ? std::dynamic_pointer_cast<UILabel>(panel->viewWithTag(labelTag)) : nullptr) {
        label->setNumberOfLines(0);
        label->setAttributedText(text);
    }
}

double TDBluetoothCell::preferredHeightForWidth(double /*width*/)
{
    return cellHeight;
}

void TDBluetoothCell::layoutSubviews()
{
    Super::layoutSubviews();
    const auto panel = viewWithTag(panelTag);
    if (!panel)
        return;
    panel->setFrame({ 0, 0, frame().width, frame().height - stripHeight });
    if (const auto label = panel->viewWithTag(labelTag))
        label->setFrame({ 0, 0, panel->frame().width, panel->frame().height });
}
