#include "TDFeatureSettingsController.h"

#include "TDRootListController.h"
#include "TDRootLookup.h"
#include "TDSliderCell.h"
#include "libtandem/TDSettings.h"

NS_IMPLEMENTATION(TDFeatureSettingsController)

Value TDFeatureSettingsController::readPreferenceValue(const Row& row)
{
    const auto root = tandemSettingsController(self());
    return root ? root->readPreferenceValue(row) : Value();
}

void TDFeatureSettingsController::setPreferenceValue_specifier(const Value& value, const Row& row)
{
    if (const auto root = tandemSettingsController(self()))
        root->setPreferenceValue_specifier(value, row);
    TDSettings::sharedSettings()->reloadSettings();
}

double TDFeatureSettingsController::tableView_estimatedHeightForRowAtIndexPath(UITableView& table, NSIndexPath path)
{
    // Of exactly that class: a subclass may have another height.
    if (rowAt(path)->propertyForKey(PSProperty::cellClass).classObject() == &TDSliderCell::classObject())
        return TDSliderCell::defaultCellHeight();
    return Super::tableView_estimatedHeightForRowAtIndexPath(table, path);
}

void TDFeatureSettingsController::showRowAfter(std::string_view identifier, const char* pageDefinition)
{
    const Rows fresh = loadSpecifiersFromPlistName_target(pageDefinition, self());
    const long index = vx__indexByIdentifier_identifier(fresh, identifier);
    if (index <= 0)
        return;
    const auto after = static_cast<std::size_t>(index) + 1;
    insertSpecifier_atIndex_animated(rowAtIndex(fresh, after), after, true);
}

void TDFeatureSettingsController::hideRowAfter(std::string_view identifier)
{
    const long index = vx__indexByIdentifier_identifier(*_specifiers, identifier);
    if (index > 0)
        removeSpecifierAtIndex_animated(static_cast<std::size_t>(index) + 1, true);
}

void TDFeatureSettingsController::switchRowAfter(
    const Value& value, const Row& row, std::string_view identifier, const char* pageDefinition)
{
    setPreferenceValue_specifier(value, row);
    followSwitch(
        value, [&] { showRowAfter(identifier, pageDefinition); }, [&] { hideRowAfter(identifier); });
}
