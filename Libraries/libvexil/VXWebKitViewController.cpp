#include "libvexil/VXWebKitViewController.h"

#include "Phone/Phone.h"
#include "libvexil/VXErrorAlert.h"
#include "libvexil/VXText.h"

NS_IMPLEMENTATION(VXWebKitViewController, NS_INITIALIZER(initWithProduct_loadDefault))

namespace {

constexpr const char* productsUrl = "https://vexil.example/products";
constexpr const char* noBrowserMessage = "No browser could be reached.";

} // namespace

bool VXWebKitViewController::initWithProduct_loadDefault(std::optional<std::string> product, bool loadDefault)
{
    _url = productsUrl;
    if (product)
        _url += "?from=" + *product;
    _loadDefault = loadDefault;
    return true;
}

void VXWebKitViewController::viewDidLoad()
{
    Super::viewDidLoad();
    if (_loadDefault)
        openInBrowser();
}

void VXWebKitViewController::openInBrowser()
{
    const auto& links = Phone::current().links;
    const auto showError = showingErrorOnTop(navigationController(), title(), translated(noBrowserMessage));
    if (links && !links->open(_url, showError))
        showError();
}
