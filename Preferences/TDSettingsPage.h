#pragma once

#include "libvexil/VXMiscSettingsViewController.h"

/// What all six pages answer alike: the bar in the product's blue, the share message with its picture, the footer with
/// the installed version.
class TDSettingsPage : public VXMiscSettingsViewController {
    NS_CLASS(TDSettingsPage, VXMiscSettingsViewController)
public:
    bool hasCustomNavigationBarColor() override { return true; }
    UIColor customNavigationBarColor() override;
    std::string twitterMessage() override;
    std::shared_ptr<UIImage> twitterImage() override;
    /// The row "CopyRightHeader" of the page; null on pages without one.
    Row copyRightSpecifier() override;
    std::string copryRightSpecifierText(long year) override;

protected:
    /// The text in the user's language, looked up in the application's own bundle; the text itself where there is none.
    static std::string localized(const char* text);
    /// Moves rows after a switch: has them shown or hidden one by one, where rows are built already, and builds the
    /// page anew. When something raises, the page stays as it was.
    void followSwitch(const Value& value, const std::function<void()>& showRows, const std::function<void()>& hideRows);
    /// The image of that name in the bundle that the page came from; null when it is not there.
    std::shared_ptr<UIImage> bundleImage(const char* name) const;
};
