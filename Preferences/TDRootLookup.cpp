#include "TDRootLookup.h"

#include "TDRootListController.h"

std::shared_ptr<TDRootListController> tandemSettingsController(const std::shared_ptr<PSListController>& page)
{
    auto candidate = page;
    for (;;) {
        const Class* rootClass = NSClassFromString("TDRootListController");
        if (!candidate || candidate->isKindOfClass(rootClass))
            return std::static_pointer_cast<TDRootListController>(candidate);
        candidate = candidate->parentController();
    }
}
