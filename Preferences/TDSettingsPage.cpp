#include "TDSettingsPage.h"

#include "Foundation/NSString.h"
#include "TDPageStyle.h"
#include "TDProductVersion.h"

NS_IMPLEMENTATION(TDSettingsPage)

namespace {

constexpr const char* footerIdentifier = "CopyRightHeader";
constexpr const char* footerFormat = "Version %@ © %ld Vexil. All rights reserved.";
constexpr const char* shareMessage = "I'm Loving #Pairo, which brings ability to choose sim while dialing a number or "
                                     "texting from dual (e)Sim iPhones.";
constexpr const char* shareImageName = "twitter";

} // namespace

UIColor TDSettingsPage::customNavigationBarColor()
{
    return accentColor;
}

std::string TDSettingsPage::twitterMessage()
{
    return localized(shareMessage);
}

std::shared_ptr<UIImage> TDSettingsPage::twitterImage()
{
    return bundleImage(shareImageName);
}

Row TDSettingsPage::copyRightSpecifier()
{
    return vx__specifierByIdentifier_identifier(specifiers(), footerIdentifier);
}

std::string TDSettingsPage::copryRightSpecifierText(long year)
{
    return stringWithFormat(footerFormat, { getProductVersion(), year });
}

std::string TDSettingsPage::localized(const char* text)
{
    return NSBundle::mainBundle()->localizedStringForKey_value_table(text, "", "");
}

void TDSettingsPage::followSwitch(
    const Value& value, const std::function<void()>& showRows, const std::function<void()>& hideRows)
{
    changeRows([&] {
        if (_specifiers)
            value.boolValue() ? showRows() : hideRows();
        reloadSpecifiers();
    });
}

std::shared_ptr<UIImage> TDSettingsPage::bundleImage(const char* name) const
{
    return UIImage::imageNamed_inBundle(name, *NSBundle::bundleForClass(isa()));
}
