#pragma once

#include "UIKit/UIViewController.h"

#include <optional>
#include <string>

/// The maker's products page, opened in the user's browser.
class VXWebKitViewController final : public UIViewController {
    NS_CLASS(VXWebKitViewController, UIViewController)
public:
    /// The product's name, percent-escaped, tells the page where the user comes from; absent for nowhere.
    bool initWithProduct_loadDefault(std::optional<std::string> product, bool loadDefault);
    const std::string& url() const { return _url; }
    /// Opens the page in the browser. When that fails, an alert says so above whatever is on the screen
    /// then.
    void openInBrowser();

    // UIViewController
    void viewDidLoad() override;

private:
    std::string _url;
    bool _loadDefault = false;
};
