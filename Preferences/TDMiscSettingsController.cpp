#include "TDMiscSettingsController.h"

#include "Foundation/NSString.h"
#include "TDRootListController.h"
#include "TDRootLookup.h"
#include "TDRowBinding.h"
#include "libtandem/TDProduct.h"
#include "libtandem/TDSettings.h"
#include "libtandem/TDUtils.h"

NS_IMPLEMENTATION(TDMiscSettingsController)

namespace {

constexpr const char* pageDefinition = "Misc";
constexpr const char* product = "Pairo";
constexpr const char* backButtonImageName = "Tandem";
constexpr const char* updateSelector = "updateSettingsDict:forKey:";
constexpr const char* loggingIsOffMessage =
    "Please turn on 'Enable Logging' and try. Before sharing the log file, please ensure that the problem is "
    "reproducible "
    "on your device. This helps the %@ to log the necessary information for identifying the problem.";

} // namespace

std::optional<std::string> TDMiscSettingsController::specifiersFileName()
{
    return pageDefinition;
}

std::string TDMiscSettingsController::serviceName()
{
    return TDProduct::identifier;
}

std::string TDMiscSettingsController::productName()
{
    return localized(product);
}

std::shared_ptr<UIBarButtonItem> TDMiscSettingsController::customBackButton()
{
    return UIBarButtonItem::itemWithImage_style_target_action(
        bundleImage(backButtonImageName), UIBarButtonItemStyle::Plain, self(), "backButtonAction:");
}

UIColor TDMiscSettingsController::customNavigationBarColor()
{
    return TDUtils::navigationBarColor(isa());
}

void TDMiscSettingsController::emailLogFile(const Value& sender)
{
    if (TDSettings::sharedSettings()->isLoggingEnabled())
        Super::emailLogFile(sender);
    else
        showError(stringWithFormat(localized(loggingIsOffMessage), { productName() }));
}

Value TDMiscSettingsController::readPreferenceValue(const Row& row)
{
    const auto root = tandemSettingsController(self());
    return root ? root->readPreferenceValue(row) : Value();
}

void TDMiscSettingsController::setPreferenceValue_specifier(const Value& value, const Row& row)
{
    if (!row)
        return;
    const auto root = tandemSettingsController(self());
    if (root && root->respondsToSelector(updateSelector)) {
        root->performSelector(updateSelector, valueToStore(value, *row), row->propertyForKey(PSProperty::key));
        TDSettings::sharedSettings()->reloadSettings();
    }
    row->postNotification();
}
