#include "PreferencesUI/PSSpecifier.h"

#include "Foundation/NSString.h"
#include "Phone/Phone.h"

#include <array>
#include <stdexcept>

NS_IMPLEMENTATION(PSSpecifier, NS_METHOD(preferenceSpecifierNamed_target_set_get_detail_cell_edit),
    NS_METHOD(groupSpecifierWithName), NS_METHOD(emptyGroupSpecifier), NS_METHOD(name), NS_METHOD(identifier),
    NS_METHOD(setIdentifier), NS_METHOD(userInfo), NS_METHOD(setUserInfo), NS_METHOD(properties),
    NS_METHOD(propertyForKey), NS_METHOD(setProperty_forKey), NS_METHOD(setButtonAction))

namespace {

constexpr std::array<const char*, 16> cellTypeNames { "PSGroupCell", "PSLinkCell", "PSLinkListCell", "PSListItemCell",
    "PSTitleValueCell", "PSSliderCell", "PSSwitchCell", "PSStaticTextCell", "PSEditTextCell", "PSSegmentCell",
    "PSGiantIconCell", "PSGiantCell", "PSSecureEditTextCell", "PSButtonCell", "PSEditTextViewCell", "PSSpinnerCell" };

}

const char* nameOfCellType(PSCellType type)
{
    return cellTypeNames.at(static_cast<std::size_t>(type));
}

std::optional<PSCellType> cellTypeNamed(std::string_view name)
{
    for (std::size_t i = 0; i < cellTypeNames.size(); ++i) {
        if (name == cellTypeNames.at(i))
            return static_cast<PSCellType>(i);
    }
    return std::nullopt;
}

Row PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(std::optional<std::string> name,
    const std::shared_ptr<NSObject>& target, std::string set, std::string get, const Class* detail, PSCellType cell,
    const Class* edit)
{
    auto row = std::make_shared<PSSpecifier>();
    row->_name = std::move(name);
    row->_target = target;
    row->_setter = std::move(set);
    row->_getter = std::move(get);
    row->_detailControllerClass = detail;
    row->_cellType = cell;
    row->_editPaneClass = edit;
    return row;
}

Row PSSpecifier::groupSpecifierWithName(std::optional<std::string> name)
{
    return preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        std::move(name), nullptr, "", "", nullptr, PSCellType::Group, nullptr);
}

Row PSSpecifier::emptyGroupSpecifier()
{
    return groupSpecifierWithName(std::nullopt);
}

void PSSpecifier::setProperty_forKey(const Value& value, const std::string& key)
{
    if (value.isNull())
        _properties.erase(key);
    else
        _properties.insert_or_assign(key, value);
}

bool PSSpecifier::isEnabled() const
{
    const Value& enabled = propertyForKey(PSProperty::enabled);
    return enabled.isNull() || enabled.boolValue();
}

std::optional<std::string> PSSpecifier::notificationName() const
{
    return propertyForKey(PSProperty::postNotification).optionalString();
}

void PSSpecifier::postNotification() const
{
    const auto name = notificationName();
    const auto& center = Phone::current().darwinNotifications;
    if (name && center)
        center->post(*name);
}

Value PSSpecifier::performGetter() const
{
    const auto receiver = target();
    if (!receiver || _getter.empty())
        return {};
    return receiver->performSelector(_getter, std::const_pointer_cast<NSObject>(shared_from_this()));
}

void PSSpecifier::performSetterWithValue(const Value& value)
{
    const auto receiver = target();
    if (receiver && !_setter.empty())
        receiver->performSelector(_setter, value, self());
}

void PSSpecifier::performButtonAction()
{
    const auto receiver = target();
    if (receiver && !_buttonAction.empty())
        receiver->performSelector(_buttonAction, self());
}

std::string PSSpecifier::description() const
{
    return stringWithFormat("<PSSpecifier %@ %@>", { nameOfCellType(_cellType), _identifier });
}

void raiseRangeError(const char* operation, std::size_t index, std::size_t count)
{
    throw std::out_of_range(
        stringWithFormat("%@ index %@ beyond bounds of a list of %@ rows", { operation, Value(index), Value(count) }));
}

const Row& rowAtIndex(const Rows& rows, std::size_t index)
{
    if (index >= rows.size())
        raiseRangeError("objectAtIndex:", index, rows.size());
    return rows[index];
}

void removeRowAtIndex(Rows& rows, std::size_t index)
{
    if (index >= rows.size())
        raiseRangeError("removeObjectAtIndex:", index, rows.size());
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(index));
}
