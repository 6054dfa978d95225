#include "PreferencesUI/PSPageDefinition.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "UIKit/UIImage.h"

namespace {

constexpr const char* defaultSetter = "setPreferenceValue:specifier:";
constexpr const char* defaultGetter = "readPreferenceValue:";
constexpr const char* titleKey = "title";
constexpr const char* itemsKey = "items";

/// Makes the rows of one file.
class Loader {
public:
    Loader(const std::string& name, const std::shared_ptr<NSObject>& target)
        : _name(name)
        , _target(target)
        , _bundle(NSBundle::bundleForClass(target->isa()))
    {
    }

    PSPageDefinition load() const
    {
        PSPageDefinition page;
        const std::string path = stringByAppendingPathComponent(_bundle->bundlePath(), _name + ".plist");
        const Value file = cachedPropertyListInFile(path);
        page.title = translated(file[titleKey]);
        if (const auto* items = file[itemsKey].array()) {
            for (const Value& item : *items) {
                if (item.dictionary())
                    page.rows.push_back(makeRow(*item.dictionary()));
            }
        }
        return page;
    }

private:
    static std::optional<std::string> translated(const Value& text)
    {
        if (!text.string())
            return std::nullopt;
        return NSBundle::mainBundle()->localizedStringForKey_value_table(*text.string(), "", "");
    }

    Row makeRow(const Dictionary& item) const
    {
        const auto text = [&](const char* key) { return valueForKey(item, key).optionalString(); };
        const PSCellType type =
            cellTypeNamed(text(PSProperty::cell).value_or(std::string())).value_or(PSCellType::StaticText);
        Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            translated(valueForKey(item, PSProperty::label)), _target, text(PSProperty::setter).value_or(defaultSetter),
            text(PSProperty::getter).value_or(defaultGetter),
            NSClassFromString(text(PSProperty::detail).value_or(std::string())), type, nullptr);
        row->setIdentifier(text(PSProperty::identifier));
        row->setButtonAction(text(PSProperty::action).value_or(std::string()));
        for (const auto& [key, value] : item)
            row->setProperty_forKey(value, key);
        resolveProperties(*row);
        return row;
    }

    /// What the file can only name, the row holds: classes, images, translated texts.
    void resolveProperties(PSSpecifier& row) const
    {
        const auto* cellClass = row.propertyForKey(PSProperty::cellClass).string();
        if (cellClass)
            row.setProperty_forKey(NSClassFromString(*cellClass), PSProperty::cellClass);
        if (const auto* icon = row.propertyForKey(PSProperty::icon).string())
            row.setProperty_forKey(
                UIImage::imageNamed_inBundle(nameWithoutType(*icon), *_bundle), PSProperty::iconImage);
        if (const auto footer = translated(row.propertyForKey(PSProperty::footerText)))
            row.setProperty_forKey(*footer, PSProperty::footerText);
    }

    static std::string nameWithoutType(const std::string& file)
    {
        constexpr std::string_view type = ".png";
        return file.ends_with(type) ? file.substr(0, file.size() - type.size()) : file;
    }

    const std::string& _name;
    const std::shared_ptr<NSObject>& _target;
    std::shared_ptr<NSBundle> _bundle;
};

} // namespace

PSPageDefinition loadPageDefinition(const std::string& name, const std::shared_ptr<NSObject>& target)
{
    return target ? Loader(name, target).load() : PSPageDefinition();
}
