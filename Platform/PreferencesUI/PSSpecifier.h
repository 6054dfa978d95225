#pragma once

#include "Runtime/NSObject.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class PSSpecifier;

/// A row of a page, or a group: rows stand behind pages, cells and files alike under this name.
using Row = std::shared_ptr<PSSpecifier>;
/// The rows of a page in their order, groups among them.
using Rows = std::vector<Row>;

/// What kind of cell a row has. The numbers are the platform's.
enum class PSCellType {
    Group = 0,
    Link = 1,
    LinkList = 2,
    ListItem = 3,
    TitleValue = 4,
    Slider = 5,
    Switch = 6,
    StaticText = 7,
    EditText = 8,
    Segment = 9,
    GiantIcon = 10,
    Giant = 11,
    SecureEditText = 12,
    Button = 13,
    EditTextView = 14,
    Spinner = 15,
};

/// "PSSwitchCell" for Switch, and so on.
const char* nameOfCellType(PSCellType type);
/// Nothing for a name that is none.
std::optional<PSCellType> cellTypeNamed(std::string_view name);

/// The names of a row's properties, as page definitions write them.
namespace PSProperty {
inline constexpr const char* cell = "cell";
inline constexpr const char* cellClass = "cellClass";
inline constexpr const char* label = "label";
inline constexpr const char* identifier = "id";
inline constexpr const char* key = "key";
inline constexpr const char* defaultValue = "default";
inline constexpr const char* defaults = "defaults";
inline constexpr const char* setter = "set";
inline constexpr const char* getter = "get";
inline constexpr const char* action = "action";
inline constexpr const char* detail = "detail";
inline constexpr const char* icon = "icon";
inline constexpr const char* iconImage = "iconImage";
inline constexpr const char* minimum = "min";
inline constexpr const char* maximum = "max";
inline constexpr const char* showValue = "showValue";
inline constexpr const char* isSegmented = "isSegmented";
inline constexpr const char* segmentCount = "segmentCount";
inline constexpr const char* isContinuous = "isContinuous";
inline constexpr const char* footerText = "footerText";
inline constexpr const char* bundleIdentifier = "bundleIdentifier";
inline constexpr const char* negate = "negate";
inline constexpr const char* postNotification = "PostNotification";
inline constexpr const char* enabled = "enabled";
}

/// A row: its title, its identifier, what shows it, what reads and writes its value, and a dictionary of properties.
class PSSpecifier final : public NSObject {
    NS_CLASS(PSSpecifier, NSObject)
public:
    /// The target, held weakly, performs the setter and the getter; null, absent or empty arguments leave the part out.
    static Row preferenceSpecifierNamed_target_set_get_detail_cell_edit(std::optional<std::string> name,
        const std::shared_ptr<NSObject>& target, std::string set, std::string get, const Class* detail, PSCellType cell,
        const Class* edit);
    static Row groupSpecifierWithName(std::optional<std::string> name);
    static Row emptyGroupSpecifier();

    const std::optional<std::string>& name() const { return _name; }
    void setName(std::optional<std::string> name) { _name = std::move(name); }
    const std::optional<std::string>& identifier() const { return _identifier; }
    void setIdentifier(std::optional<std::string> identifier) { _identifier = std::move(identifier); }
    bool hasIdentifier(std::string_view identifier) const { return _identifier && *_identifier == identifier; }
    PSCellType cellType() const { return _cellType; }
    bool isGroup() const { return _cellType == PSCellType::Group; }
    /// The class of the page that the row opens; null when it opens none.
    const Class* detailControllerClass() const { return _detailControllerClass; }
    /// What a page wants to find again with the row.
    const std::shared_ptr<NSObject>& userInfo() const { return _userInfo; }
    void setUserInfo(std::shared_ptr<NSObject> info) { _userInfo = std::move(info); }

    std::shared_ptr<NSObject> target() const { return _target.lock(); }
    const std::string& setter() const { return _setter; }
    const std::string& getter() const { return _getter; }
    /// What the target performs, with the row, when the row is tapped; empty for nothing.
    const std::string& buttonAction() const { return _buttonAction; }
    void setButtonAction(const std::string& action) { _buttonAction = action; }

    const Dictionary& properties() const { return _properties; }
    /// Null when the row does not have the property.
    const Value& propertyForKey(std::string_view key) const { return valueForKey(_properties, key); }
    /// Null takes the property away.
    void setProperty_forKey(const Value& value, const std::string& key);
    /// False for a row that is shown but cannot be worked ("enabled"); without the property it can.
    bool isEnabled() const;
    /// The notification that other processes get after the row's value was stored ("PostNotification"); absent for
    /// none.
    std::optional<std::string> notificationName() const;
    /// Posts that notification; does nothing for a row without one.
    void postNotification() const;

    /// The row's value, as its target reads it; null without a getter or a target.
    Value performGetter() const;
    /// Has the target store the value; does nothing without a setter or a target.
    void performSetterWithValue(const Value& value);
    void performButtonAction();

    std::string description() const override;

private:
    std::optional<std::string> _name;
    std::optional<std::string> _identifier;
    PSCellType _cellType = PSCellType::Group;
    std::weak_ptr<NSObject> _target;
    std::string _setter;
    std::string _getter;
    std::string _buttonAction;
    const Class* _detailControllerClass = nullptr;
    const Class* _editPaneClass = nullptr;
    std::shared_ptr<NSObject> _userInfo;
    Dictionary _properties;
};

/// The list's range error, std::out_of_range: the operation was given an index that a list of so many rows does not
/// have.
[[noreturn]] void raiseRangeError(const char* operation, std::size_t index, std::size_t count);
/// Raises the list's range error when there is no such row.
const Row& rowAtIndex(const Rows& rows, std::size_t index);
/// Takes the row at that index away. Raises the list's range error when there is none.
void removeRowAtIndex(Rows& rows, std::size_t index);
