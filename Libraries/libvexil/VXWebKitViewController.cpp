#include "libvexil/VXWebKitViewController.h"

#include "Phone/Phone.h"

NS_IMPLEMENTATION(VXWebKitViewController, NS_INITIALIZER(initWithProduct_loadDefault))

namespace {

constexpr const char* productsUrl = "https://vexil.example/products";

}

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
    if (_loadDefault && Phone::current().links)
        Phone::current().links->open(_url);
}
