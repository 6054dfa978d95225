#include "TDMessagesSettingsController.h"

#include "TDAppIcons.h"
#include "TDPageStyle.h"
#include "libtandem/TDSettings.h"

NS_IMPLEMENTATION(TDMessagesSettingsController, NS_METHOD(hideORShowMessagesSpecifiers),
    NS_METHOD(hideORShowDefaultActionCellSpecifiers), NS_METHOD(tandemEnabledOrDisabledForMessages_specifier),
    NS_METHOD(tandemEnabledOrDisabledForIMToText_specifier), NS_METHOD(enableShowSimSelectionForMessages_specifier))

namespace {

constexpr const char* pageDefinition = "Messages";
constexpr const char* imToTextIdentifier = "TandemEnabledIMToText";
constexpr const char* simChoiceIdentifier = "ShowSimSlectionForMessages";
constexpr const char* selectionTimeIdentifier = "TandemSimSelectionTimeForMessages";

} // namespace

Rows& TDMessagesSettingsController::hideORShowMessagesSpecifiers(Rows& rows)
{
    if (TDSettings::sharedSettings()->isEnabledForMessages()) {
        hideORShowDefaultActionCellSpecifiers(rows);
        return rows;
    }
    if (rows.empty())
        return rows;
    for (std::size_t i = rows.size() - 2; i > 1; --i)
        removeRowAtIndex(rows, i);
    return rows;
}

Rows& TDMessagesSettingsController::hideORShowDefaultActionCellSpecifiers(Rows& rows)
{
    const auto settings = TDSettings::sharedSettings();
    const long imToText = vx__indexByIdentifier_identifier(rows, imToTextIdentifier);
    if (!settings->isEnabledForIMToText() && imToText > 0)
        removeRowAtIndex(rows, static_cast<std::size_t>(imToText) + 1);
    const long selectionTime = vx__indexByIdentifier_identifier(rows, selectionTimeIdentifier);
    if (!settings->isDefaultActionForMessages() && selectionTime > 0)
        removeRowAtIndex(rows, static_cast<std::size_t>(selectionTime));
    return rows;
}

const Rows& TDMessagesSettingsController::specifiers()
{
    if (!_specifiers) {
        Rows rows = loadSpecifiersFromPlistName_target(pageDefinition, self());
        _specifiers = hideORShowMessagesSpecifiers(rows);
        fetchAppIcons(*_specifiers);
    }
    return *_specifiers;
}

void TDMessagesSettingsController::tandemEnabledOrDisabledForMessages_specifier(const Value& value, const Row& row)
{
    setPreferenceValue_specifier(value, row);
    followSwitch(
        value, [&] { insertIMToTextRows(); }, [&] { removeIMToTextRows(); });
}

void TDMessagesSettingsController::insertIMToTextRows()
{
    const Rows fresh = loadSpecifiersFromPlistName_target(pageDefinition, self());
    const long index = vx__indexByIdentifier_identifier(fresh, imToTextIdentifier);
    if (index <= 0)
        return;
    const auto imToText = static_cast<std::size_t>(index);
    for (std::size_t i = imToText - 1; i <= imToText + 1; ++i)
        insertSpecifier_atIndex_animated(rowAtIndex(fresh, i), i, true);
}

void TDMessagesSettingsController::removeIMToTextRows()
{
    const long index = vx__indexByIdentifier_identifier(*_specifiers, imToTextIdentifier);
    if (index <= 0)
        return;
    const auto imToText = static_cast<std::size_t>(index);
    for (const std::size_t i : { imToText + 1, imToText, imToText - 1 })
        removeSpecifierAtIndex_animated(i, true);
}

void TDMessagesSettingsController::tandemEnabledOrDisabledForIMToText_specifier(const Value& value, const Row& row)
{
    switchRowAfter(value, row, imToTextIdentifier, pageDefinition);
}

void TDMessagesSettingsController::enableShowSimSelectionForMessages_specifier(const Value& value, const Row& row)
{
    switchRowAfter(value, row, simChoiceIdentifier, pageDefinition);
}

std::shared_ptr<UITableViewCell> TDMessagesSettingsController::tableView_cellForRowAtIndexPath(
    UITableView& table, NSIndexPath path)
{
    const auto cell = Super::tableView_cellForRowAtIndexPath(table, path);
    if (!cell)
        return cell;
    // In the accent colour on dark too, unlike the icon of the Calls page.
    if (rowAt(path)->hasIdentifier(simChoiceIdentifier))
        tintIcon(*cell, accentColor);
    colorTexts(*cell);
    return cell;
}
