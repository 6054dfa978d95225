#include "TDBluetoothDevicesController.h"

#include "Foundation/NSString.h"
#include "Phone/BluetoothManager.h"
#include "TDPageStyle.h"
#include "libtandem/TDSettings.h"
#include "libtandem/TDUtils.h"

NS_IMPLEMENTATION(TDSIMInfoTableCell)
NS_IMPLEMENTATION(TDBluetoothDevicesController, NS_METHOD(blueToothSpecifiers), NS_METHOD(setBlueToothSpecifiers),
    NS_METHOD(isBluetoothDeviceSelected), NS_METHOD(defaultSIMUUIDString), NS_METHOD(updateSimSelection_specifier))

namespace {

using Context = std::shared_ptr<CTXPCServiceSubscriptionContext>;

constexpr const char* groupTitle = "Default SIM";
constexpr const char* groupFooter =
    "When this device is connected to the above Bluetooth device, selected sim will be used "
    "while making outgoing call.";
constexpr char keySeparator = '+';

/// The SIM that the row stands for; null for a row that stands for none.
Context simOf(const PSSpecifier& row)
{
    const auto& info = row.userInfo();
    const bool isSim = info && info->isKindOfClass(NSClassFromString("CTXPCServiceSubscriptionContext"));
    return isSim ? std::static_pointer_cast<CTXPCServiceSubscriptionContext>(info) : nullptr;
}

/// What a SIM row's identifier joins; both absent for a row without one.
struct BindingKeys {
    std::optional<std::string> address;
    std::optional<std::string> sim;
};

BindingKeys keysOf(const PSSpecifier& simRow)
{
    if (!simRow.identifier())
        return {};
    const auto pieces = componentsSeparatedByString(*simRow.identifier(), keySeparator);
    return { pieces.front(), pieces.back() };
}

std::optional<std::string> addressOf(const Row& deviceRow)
{
    return deviceRow ? deviceRow->identifier() : std::nullopt;
}

Row makeDeviceRow(const std::shared_ptr<BluetoothDevice>& device, const std::shared_ptr<NSObject>& target)
{
    Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(device->name(), target,
        "setPreferenceValue:specifier:", "readPreferenceValue:", nullptr, PSCellType::Switch, nullptr);
    row->setProperty_forKey(NSClassFromString("TDSwitchCell"), PSProperty::cellClass);
    row->setIdentifier(device->address());
    row->setUserInfo(device);
    return row;
}

Row makeSimRow(const std::string& address, const Context& context, const std::shared_ptr<NSObject>& target)
{
    Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        TDUtils::carrierBundleController()->localizedCarrierNameForSubscriptionContext(context), target,
        "updateSimSelection:specifier:", "", nullptr, PSCellType::Link, nullptr);
    row->setProperty_forKey(&TDSIMInfoTableCell::classObject(), PSProperty::cellClass);
    row->setIdentifier(stringWithFormat("%@+%@", { address, context->uuid().UUIDString() }));
    row->setUserInfo(context);
    return row;
}

bool carriesCheckmark(const CTXPCServiceSubscriptionContext& context, const std::optional<std::string>& bound)
{
    return bound ? context.uuid().UUIDString() == *bound : context.userDefaultVoice();
}

} // namespace

const Rows& TDBluetoothDevicesController::specifiers()
{
    if (!_specifiers)
        _specifiers = blueToothSpecifiers();
    return *_specifiers;
}

Rows TDBluetoothDevicesController::blueToothSpecifiers()
{
    _blueToothSpecifiers = Rows();
    const auto devices = BluetoothManager::sharedInstance()->pairedDevices();
    const TDUtils::Contexts contexts = TDUtils::fetchSubscriptions();
    for (const auto& device : devices) {
        _blueToothSpecifiers.push_back(makeDeviceRow(device, self()));
        if (isBluetoothDeviceSelected(device->address())) {
            const Row group = PSSpecifier::groupSpecifierWithName(localized(groupTitle));
            group->setProperty_forKey(localized(groupFooter), PSProperty::footerText);
            _blueToothSpecifiers.push_back(group);
            for (const Context& context : contexts)
                _blueToothSpecifiers.push_back(makeSimRow(device->address(), context, self()));
        }
        _blueToothSpecifiers.push_back(PSSpecifier::emptyGroupSpecifier());
    }
    return _blueToothSpecifiers;
}

bool TDBluetoothDevicesController::isBluetoothDeviceSelected(const std::optional<std::string>& address) const
{
    return TDSettings::sharedSettings()->hasBluetoothDevice(address);
}

std::optional<std::string> TDBluetoothDevicesController::defaultSIMUUIDString() const
{
    for (const Context& context : TDUtils::fetchSubscriptions()) {
        if (context->userDefaultVoice())
            return context->uuid().UUIDString();
    }
    return std::nullopt;
}

void TDBluetoothDevicesController::updateSimSelection_specifier(const Value& /*value*/, const Row& /*row*/) { }

Value TDBluetoothDevicesController::readPreferenceValue(const Row& row)
{
    return isBluetoothDeviceSelected(addressOf(row));
}

void TDBluetoothDevicesController::setPreferenceValue_specifier(const Value& /*value*/, const Row& row)
{
    const auto address = addressOf(row);
    const auto settings = TDSettings::sharedSettings();
    if (isBluetoothDeviceSelected(address)) {
        settings->removeFromBluetoothDevices(address);
    } else {
        auto sim = settings->defaultSIMForBluetooth(address);
        if (!sim)
            sim = defaultSIMUUIDString();
        settings->addToBluetoothDevices_defaultSIM(address, sim);
    }
    reloadSpecifiers();
}

std::shared_ptr<UITableViewCell> TDBluetoothDevicesController::tableView_cellForRowAtIndexPath(
    UITableView& table, NSIndexPath path)
{
    const auto cell = Super::tableView_cellForRowAtIndexPath(table, path);
    if (!cell)
        return cell;
    const Row row = rowAt(path);
    cell->textLabel()->setTextColor(accentOrWhite());
    const Context context = simOf(*row);
    if (!context) {
        cell->setSelectionStyle(UITableViewCellSelectionStyle::None);
        return cell;
    }
    if (const auto& detail = cell->detailTextLabel()) {
        detail->setTextColor(accentOrWhite());
        detail->setText(TDUtils::formattedPhoneNumber(context->phoneNumber()));
    }
    const auto bound = TDSettings::sharedSettings()->defaultSIMForBluetooth(keysOf(*row).address);
    cell->setAccessoryType(carriesCheckmark(*context, bound) ? UITableViewCellAccessoryType::Checkmark
                                                             : UITableViewCellAccessoryType::None);
    cell->setUserInteractionEnabled(true);
    cell->setSelectionStyle(UITableViewCellSelectionStyle::Default);
    return cell;
}

void TDBluetoothDevicesController::tableView_didSelectRowAtIndexPath(UITableView& table, NSIndexPath path)
{
    const Row row = rowAt(path);
    if (!simOf(*row)) {
        Super::tableView_didSelectRowAtIndexPath(table, path);
        return;
    }
    const auto cell = table.cellForRowAtIndexPath(path);
    table.deselectRowAtIndexPath_animated(path, false);
    const BindingKeys keys = keysOf(*row);
    const auto settings = TDSettings::sharedSettings();
    if (settings->defaultSIMForBluetooth(keys.address) == keys.sim)
        return;
    if (cell)
        cell->setAccessoryType(UITableViewCellAccessoryType::Checkmark);
    settings->addToBluetoothDevices_defaultSIM(keys.address, keys.sim);
    table.beginUpdates();
    table.reloadSections_withRowAnimation({ path.section }, UITableViewRowAnimation::None);
    table.endUpdates();
}

bool TDBluetoothDevicesController::tableView_shouldHighlightRowAtIndexPath(UITableView& /*table*/, NSIndexPath path)
{
    return simOf(*rowAt(path)) != nullptr;
}
