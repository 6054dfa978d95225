#include "TDRootListController.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSNotificationCenter.h"
#include "Foundation/NSString.h"
#include "TDAppIcons.h"
#include "TDPageStyle.h"
#include "TDRowBinding.h"
#include "libtandem/TDProduct.h"
#include "libtandem/TDSettings.h"
#include "libtandem/TDUtils.h"
#include "libvexil/VXWebKitViewController.h"

NS_IMPLEMENTATION(TDRootListController, NS_METHOD(settings), NS_METHOD(setSettings), NS_METHOD(loadSettings),
    NS_METHOD(updateSettingsDict_forKey), NS_METHOD(writeSettings), NS_METHOD(hideOtherSpecifiers),
    NS_METHOD(tandemEnabledOrDisabled_specifier), NS_METHOD(tandemSettingsChanged), NS_METHOD(showVexilProducts))

namespace {

constexpr const char* pageDefinition = "Root";
constexpr const char* productsIdentifier = "VexilProducts";
constexpr const char* simSettingsIdentifier = "TDSimSettingsController";
constexpr const char* titleImageName = "Tandem";
constexpr double titleFadeSeconds = 1.0;
/// Always shown: so many rows at the beginning, and so many at the end.
constexpr std::size_t leadingRows = 2;
constexpr std::size_t trailingRows = 4;

constexpr const char* serializationFailure =
    "com.vexil.Tandem: Error => Unable to save settings to %@ and settings: %@ AND error: %@";
constexpr const char* writeFailure = "com.vexil.Tandem: Error => Unable to save settings to %@ and settings: %@";

} // namespace

void TDRootListController::loadSettings()
{
    setSettings(dictionaryWithContentsOfFile(TDProduct::settingsPath()));
}

void TDRootListController::updateSettingsDict_forKey(const Value& value, const Value& key)
{
    if (_settings && key.string()) {
        if (value.isNull())
            _settings->erase(*key.string());
        else
            _settings->insert_or_assign(*key.string(), value);
    }
    writeSettings();
}

void TDRootListController::writeSettings()
{
    const Value settings = _settings ? Value(*_settings) : Value();
    const SerializedPropertyList serialized = dataWithPropertyList(settings);
    const std::string path = TDProduct::settingsPath();
    if (serialized.error) {
        TDUtils::logMessage(serializationFailure, { path, settings, serialized.error });
        return;
    }
    if (serialized.data && !writeToFile(*serialized.data, path, Atomically::No))
        TDUtils::logMessage(writeFailure, { path, settings });
}

bool TDRootListController::initForContentSize(CGSize size)
{
    if (!Super::initForContentSize(size))
        return false;
    loadSettings();
    return true;
}

const Rows& TDRootListController::specifiers()
{
    if (!_specifiers) {
        Rows rows = loadSpecifiersFromPlistName_target(pageDefinition, self());
        _specifiers = hideOtherSpecifiers(rows);
        fetchAppIcons(*_specifiers);
    }
    return *_specifiers;
}

Rows& TDRootListController::hideOtherSpecifiers(Rows& rows)
{
    if (TDSettings::sharedSettings()->isEnabled() || rows.size() < leadingRows + trailingRows)
        return rows;
    for (std::size_t i = rows.size() - trailingRows - 1; i >= leadingRows; --i)
        removeRowAtIndex(rows, i);
    return rows;
}

void TDRootListController::tandemEnabledOrDisabled_specifier(const Value& value, const Row& row)
{
    setPreferenceValue_specifier(value, row);
    TDSettings::sharedSettings()->reloadSettings();
    followSwitch(
        value, [&] { insertEnabledRows(); }, [&] { removeEnabledRows(); });
}

void TDRootListController::insertEnabledRows()
{
    const Rows fresh = loadSpecifiersFromPlistName_target(pageDefinition, self());
    for (std::size_t i = leadingRows; i + trailingRows < fresh.size(); ++i)
        insertSpecifier_atIndex_animated(fresh[i], i, true);
}

void TDRootListController::removeEnabledRows()
{
    if (_specifiers->size() <= trailingRows)
        return;
    for (std::size_t i = _specifiers->size() - trailingRows - 1; i >= leadingRows; --i)
        removeSpecifierAtIndex_animated(i, true);
}

Value TDRootListController::readPreferenceValue(const Row& row)
{
    if (!row)
        return {};
    const auto* key = row->propertyForKey(PSProperty::key).string();
    const Value stored = _settings && key ? valueForKey(*_settings, *key) : Value();
    return stored.isNull() ? row->propertyForKey(PSProperty::defaultValue) : stored;
}

void TDRootListController::setPreferenceValue_specifier(const Value& value, const Row& row)
{
    if (!row)
        return;
    updateSettingsDict_forKey(valueToStore(value, *row), row->propertyForKey(PSProperty::key));
    row->postNotification();
}

void TDRootListController::viewDidLoad()
{
    Super::viewDidLoad();
    const auto titleView = std::make_shared<UIImageView>(bundleImage(titleImageName));
    navigationItem().titleView = titleView;
    titleView->setAlpha(0);
    UIView::animateWithDuration_animations(
        titleFadeSeconds, [page = self()] { page->navigationItem().titleView->setAlpha(1); });
    NSNotificationCenter::defaultCenter().addObserver_selector_name(
        self(), "tandemSettingsChanged:", TDProduct::settingsChangedNotification);
}

void TDRootListController::tandemSettingsChanged(const Value& /*notification*/)
{
    loadSettings();
}

std::shared_ptr<UITableViewCell> TDRootListController::tableView_cellForRowAtIndexPath(
    UITableView& table, NSIndexPath path)
{
    const auto cell = Super::tableView_cellForRowAtIndexPath(table, path);
    const Row row = rowAt(path);
    if (!cell)
        return cell;
    if (row->hasIdentifier(productsIdentifier))
        cell->setAccessoryType(UITableViewCellAccessoryType::DisclosureIndicator);
    if (row->hasIdentifier(simSettingsIdentifier))
        tintIcon(*cell, accentOrWhite());
    colorTexts(*cell);
    return cell;
}

void TDRootListController::tableView_didSelectRowAtIndexPath(UITableView& table, NSIndexPath path)
{
    const Row row = rowAt(path);
    if (row->hasIdentifier(productsIdentifier)) {
        table.deselectRowAtIndexPath_animated(path, true);
        showVexilProducts(row);
        return;
    }
    Super::tableView_didSelectRowAtIndexPath(table, path);
}

void TDRootListController::showVexilProducts(const Row& row)
{
    const Class* pageClass = NSClassFromString("VXWebKitViewController");
    const auto page = pageClass ? pageClass->allocAs<VXWebKitViewController>() : nullptr;
    const auto product = specifier() ? specifier()->name() : std::nullopt;
    const auto escaped = product ? std::optional(stringByAddingPercentEscapes(*product)) : std::nullopt;
    if (!page || !page->initWithProduct_loadDefault(escaped, true))
        return;
    page->setTitle(row && row->name() ? *row->name() : std::string());
    if (const auto navigation = navigationController())
        navigation->pushViewController_animated(page, true);
}
