#include "TDCallsSettingsController.h"

#include "TDAppIcons.h"
#include "TDPageStyle.h"
#include "libtandem/TDSettings.h"

NS_IMPLEMENTATION(TDCallsSettingsController, NS_METHOD(hideORShowCallsSpecifiers),
    NS_METHOD(hideORShowDefaultActionCellSpecifiers), NS_METHOD(enableTandemForCalls_specifier),
    NS_METHOD(enableShowSimSelection_specifier))

namespace {

constexpr const char* pageDefinition = "Calls";
constexpr const char* featureIdentifier = "TandemEnabledCalls";
constexpr const char* simChoiceIdentifier = "ShowSimSlectionForCalls";
constexpr const char* selectionTimeIdentifier = "TandemSimSelectionTimeForCalls";

} // namespace

Rows& TDCallsSettingsController::hideORShowCallsSpecifiers(Rows& rows)
{
    if (TDSettings::sharedSettings()->isEnabledForCalls()) {
        hideORShowDefaultActionCellSpecifiers(rows);
        return rows;
    }
    for (std::size_t i = rows.size() - 2; i > 0; --i)
        removeRowAtIndex(rows, i);
    return rows;
}

Rows& TDCallsSettingsController::hideORShowDefaultActionCellSpecifiers(Rows& rows)
{
    if (TDSettings::sharedSettings()->isDefaultActionForCalls())
        return rows;
    const long index = vx__indexByIdentifier_identifier(rows, selectionTimeIdentifier);
    if (index > 0)
        removeRowAtIndex(rows, static_cast<std::size_t>(index));
    return rows;
}

const Rows& TDCallsSettingsController::specifiers()
{
    if (!_specifiers) {
        Rows rows = loadSpecifiersFromPlistName_target(pageDefinition, self());
        _specifiers = hideORShowCallsSpecifiers(rows);
        fetchAppIcons(*_specifiers);
    }
    return *_specifiers;
}

void TDCallsSettingsController::enableTandemForCalls_specifier(const Value& value, const Row& row)
{
    setPreferenceValue_specifier(value, row);
    followSwitch(
        value, [&] { insertFeatureRows(); }, [&] { removeFeatureRows(); });
}

void TDCallsSettingsController::insertFeatureRows()
{
    const Rows fresh = loadSpecifiersFromPlistName_target(pageDefinition, self());
    const auto feature = static_cast<std::size_t>(vx__indexByIdentifier_identifier(fresh, featureIdentifier));
    for (std::size_t i = feature + 1; i < fresh.size() - 1; ++i)
        insertSpecifier_atIndex_animated(rowAtIndex(fresh, i), i, true);
}

void TDCallsSettingsController::removeFeatureRows()
{
    // The index goes on while the later rows move up, so this takes every second row; the reload takes the rest.
    const auto feature = static_cast<std::size_t>(vx__indexByIdentifier_identifier(*_specifiers, featureIdentifier));
    for (std::size_t i = feature + 1; i < _specifiers->size() - 1; ++i)
        removeSpecifierAtIndex_animated(i, true);
}

void TDCallsSettingsController::enableShowSimSelection_specifier(const Value& value, const Row& row)
{
    switchRowAfter(value, row, simChoiceIdentifier, pageDefinition);
}

std::shared_ptr<UITableViewCell> TDCallsSettingsController::tableView_cellForRowAtIndexPath(
    UITableView& table, NSIndexPath path)
{
    const auto cell = Super::tableView_cellForRowAtIndexPath(table, path);
    if (!cell)
        return cell;
    if (rowAt(path)->hasIdentifier(simChoiceIdentifier))
        tintIcon(*cell, accentOrWhite());
    colorTexts(*cell);
    return cell;
}
