#include "Driver/LayoutCheck.h"

#include "Driver/PageNames.h"
#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "PreferencesUI/PSTableCell.h"
#include "UIKit/UIViewController.h"

#include <map>
#include <set>

namespace {

constexpr const char* footerIdentifier = "CopyRightHeader";
constexpr const char* sliderClass = "TDSliderCell";
constexpr std::size_t fewestRootRows = 6;

/// Where a key was first seen, and with which default.
struct KeyUse {
    std::string place;
    Value defaultValue;
};

/// Checks one file after the other and gathers what is wrong.
class Checker {
public:
    explicit Checker(std::string bundlePath)
        : _bundlePath(std::move(bundlePath))
    {
    }

    std::vector<std::string> run()
    {
        for (const PageName& page : pageNames) {
            if (!page.definition.empty())
                checkFile(page);
        }
        return std::move(_faults);
    }

private:
    using Items = std::vector<Value>;

    void fault(const std::string& place, const std::string& rule) { _faults.push_back(place + ": " + rule); }

    static std::string textOf(const Value& item, const char* key)
    {
        return item[key].optionalString().value_or(std::string());
    }

    std::string place(std::size_t index) const
    {
        const std::string identifier =
            index < _items.size() ? textOf(_items[index], PSProperty::identifier) : std::string();
        return _file + ": row " + std::to_string(index) + (identifier.empty() ? "" : " (" + identifier + ")");
    }

    void checkFile(const PageName& page)
    {
        _file = std::string(page.definition) + ".plist";
        _items.clear();
        const auto content = dictionaryWithContentsOfFile(stringByAppendingPathComponent(_bundlePath, _file));
        if (!content)
            return fault(_file, "is missing or no property list with a dictionary");
        if (!valueForKey(*content, "title").string())
            fault(_file, "\"title\" must be a text");
        const auto* items = valueForKey(*content, "items").array();
        if (!items)
            return fault(_file, "\"items\" must be an array");
        _items = *items;
        _pageClass = NSClassFromString(page.className);
        if (!_pageClass)
            fault(_file, "no class " + std::string(page.className));
        checkItems();
        checkLayout(page.name, *content);
    }

    void checkItems()
    {
        std::set<std::string> identifiers;
        for (std::size_t i = 0; i < _items.size(); ++i) {
            if (!_items[i].dictionary()) {
                fault(place(i), "must be a dictionary");
                continue;
            }
            const std::string identifier = textOf(_items[i], PSProperty::identifier);
            if (!identifier.empty() && !identifiers.insert(identifier).second)
                fault(place(i), "the identifier is used twice");
            checkNames(i);
            checkKey(i);
        }
    }

    /// Cells, classes and selectors by name.
    void checkNames(std::size_t index)
    {
        const Value& item = _items[index];
        const std::string cell = textOf(item, PSProperty::cell);
        if (!cellTypeNamed(cell))
            fault(place(index), "unknown cell \"" + cell + "\"");
        checkClass(index, PSProperty::cellClass, PSTableCell::classObject());
        checkClass(index, PSProperty::detail, UIViewController::classObject());
        for (const char* key : { PSProperty::setter, PSProperty::getter, PSProperty::action }) {
            const Value& selector = item[key];
            if (selector.isNull())
                continue;
            if (!selector.string())
                fault(place(index), "\"" + std::string(key) + "\" must be a text");
            else if (_pageClass && !_pageClass->instancesRespondToSelector(*selector.string()))
                fault(place(index), _pageClass->name() + " does not respond to \"" + *selector.string() + "\"");
        }
    }

    void checkClass(std::size_t index, const char* key, const Class& base)
    {
        const Value& name = _items[index][key];
        if (name.isNull())
            return;
        const Class* cls = name.string() ? NSClassFromString(*name.string()) : nullptr;
        if (!cls)
            fault(place(index), "unknown class " + descriptionOf(name) + " under \"" + key + "\"");
        else if (!cls->isSubclassOf(base))
            fault(place(index), cls->name() + " under \"" + key + "\" is no " + base.name());
    }

    void checkKey(std::size_t index)
    {
        const Value& key = _items[index][PSProperty::key];
        if (key.isNull())
            return;
        if (!key.string())
            return fault(place(index), "\"key\" must be a text");
        const Value& defaultValue = _items[index][PSProperty::defaultValue];
        const auto [use, isFirst] = _keys.try_emplace(*key.string(), KeyUse { place(index), defaultValue });
        if (!isFirst && !(use->second.defaultValue == defaultValue))
            fault(place(index), "the key \"" + *key.string() + "\" has another default than in " + use->second.place);
    }

    std::optional<std::size_t> indexOf(std::string_view identifier) const
    {
        for (std::size_t i = 0; i < _items.size(); ++i) {
            if (textOf(_items[i], PSProperty::identifier) == identifier)
                return i;
        }
        return std::nullopt;
    }

    bool isCell(std::size_t index, std::string_view cell) const
    {
        return index < _items.size() && textOf(_items[index], PSProperty::cell) == cell;
    }

    void checkLayout(std::string_view page, const Dictionary& content)
    {
        if (page == "root")
            checkRoot(content);
        else if (page == "calls")
            checkCalls();
        else if (page == "messages")
            checkMessages();
        if (_items.empty() || textOf(_items.back(), PSProperty::identifier) != footerIdentifier
            || !isCell(_items.size() - 1, "PSGroupCell"))
            fault(_file, "the last row must be the group \"CopyRightHeader\"");
    }

    void checkRoot(const Dictionary& content)
    {
        if (!valueForKey(content, "Version").string())
            fault(_file, "\"Version\" must be a text");
        if (_items.size() < fewestRootRows)
            fault(_file, "must hold at least six rows");
        const auto master = indexWithSetter("tandemEnabledOrDisabled:specifier:");
        if (!master || *master > 1)
            fault(_file, "the master switch must be one of rows 0 and 1");
        requireRow("TDSimSettingsController");
        requireRow("VexilProducts");
    }

    void checkCalls()
    {
        const auto feature = indexOf("TandemEnabledCalls");
        if (feature != 0)
            fault(feature ? place(*feature) : _file, "\"TandemEnabledCalls\" must be row 0");
        requireSwitch("TandemEnabledCalls", "enableTandemForCalls:specifier:");
        requireSwitch("ShowSimSlectionForCalls", "enableShowSimSelection:specifier:");
        requireSliderAfter("ShowSimSlectionForCalls", "TandemSimSelectionTimeForCalls");
    }

    void checkMessages()
    {
        const auto feature = indexWithSetter("tandemEnabledOrDisabledForMessages:specifier:");
        if (!feature || *feature > 1)
            fault(_file, "the feature switch must be one of rows 0 and 1");
        requireSwitch("TandemEnabledIMToText", "tandemEnabledOrDisabledForIMToText:specifier:");
        requireSwitch("ShowSimSlectionForMessages", "enableShowSimSelectionForMessages:specifier:");
        requireSliderAfter("ShowSimSlectionForMessages", "TandemSimSelectionTimeForMessages");
        // The page puts these three back at their own indices while only rows 0, 1 and the footer are there.
        const auto imToText = indexOf("TandemEnabledIMToText");
        if (!imToText)
            return;
        if (*imToText != 3 || !isCell(2, "PSGroupCell"))
            fault(place(*imToText), "must be row 3, directly after its group");
        if (*imToText + 1 >= _items.size() || isCell(*imToText + 1, "PSGroupCell"))
            fault(place(*imToText), "must be followed by the row that belongs to it");
    }

    std::optional<std::size_t> indexWithSetter(std::string_view selector) const
    {
        for (std::size_t i = 0; i < _items.size(); ++i) {
            if (textOf(_items[i], PSProperty::setter) == selector)
                return i;
        }
        return std::nullopt;
    }

    std::optional<std::size_t> requireRow(const std::string& identifier)
    {
        const auto index = indexOf(identifier);
        if (!index)
            fault(_file, "the row \"" + identifier + "\" is missing");
        return index;
    }

    void requireSwitch(const std::string& identifier, const std::string& setter)
    {
        const auto index = requireRow(identifier);
        if (!index)
            return;
        if (!isCell(*index, "PSSwitchCell"))
            fault(place(*index), "must be a PSSwitchCell");
        if (textOf(_items[*index], PSProperty::setter) != setter)
            fault(place(*index), "its \"set\" must be \"" + setter + "\"");
    }

    void requireSliderAfter(const std::string& switchIdentifier, const std::string& sliderIdentifier)
    {
        const auto slider = requireRow(sliderIdentifier);
        const auto before = indexOf(switchIdentifier);
        if (!slider)
            return;
        if (before && *slider != *before + 1)
            fault(place(*slider), "must directly follow \"" + switchIdentifier + "\"");
        if (!isCell(*slider, "PSSliderCell") || textOf(_items[*slider], PSProperty::cellClass) != sliderClass)
            fault(place(*slider), "must be a PSSliderCell of the class TDSliderCell");
    }

    std::string _bundlePath;
    std::string _file;
    Items _items;
    const Class* _pageClass = nullptr;
    std::map<std::string, KeyUse> _keys;
    std::vector<std::string> _faults;
};

} // namespace

std::vector<std::string> layoutFaults(const std::string& bundlePath)
{
    return Checker(bundlePath).run();
}
