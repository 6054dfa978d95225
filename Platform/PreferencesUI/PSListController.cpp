#include "PreferencesUI/PSListController.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "Foundation/UserDirectories.h"
#include "PreferencesUI/PSPageDefinition.h"

NS_IMPLEMENTATION(PSListController, NS_INITIALIZER(initForContentSize), NS_METHOD(specifiers),
    NS_METHOD(loadSpecifiersFromPlistName_target), NS_METHOD(reloadSpecifiers), NS_METHOD(specifierAtIndex),
    NS_METHOD(indexForRow_inGroup), NS_METHOD(insertSpecifier_atIndex_animated),
    NS_METHOD(removeSpecifierAtIndex_animated), NS_METHOD(readPreferenceValue), NS_METHOD(setPreferenceValue_specifier),
    NS_METHOD(parentController), NS_METHOD(setParentController), NS_METHOD(specifier), NS_METHOD(setSpecifier),
    NS_METHOD(tableView_cellForRowAtIndexPath), NS_METHOD(tableView_estimatedHeightForRowAtIndexPath),
    NS_METHOD(tableView_heightForRowAtIndexPath), NS_METHOD(tableView_shouldHighlightRowAtIndexPath),
    NS_METHOD(tableView_didSelectRowAtIndexPath))

namespace {

constexpr double rowHeight = 44;

std::string pathOfDefaults(const std::string& domain)
{
    return stringByAppendingPathComponent(preferencesDirectory(), domain + ".plist");
}

const Class& classOfCell(const PSSpecifier& row)
{
    const Class* own = row.propertyForKey(PSProperty::cellClass).classObject();
    if (own && own->isSubclassOf(PSTableCell::classObject()))
        return *own;
    switch (row.cellType()) {
    case PSCellType::Switch:
        return PSSwitchTableCell::classObject();
    case PSCellType::Slider:
        return PSSliderTableCell::classObject();
    default:
        return PSTableCell::classObject();
    }
}

UITableViewCellStyle styleOfCell(const PSSpecifier& row)
{
    return row.cellType() == PSCellType::TitleValue || row.cellType() == PSCellType::LinkList
        ? UITableViewCellStyle::Value1
        : UITableViewCellStyle::Default;
}

} // namespace

PSListController::~PSListController() = default;

bool PSListController::initForContentSize(CGSize size)
{
    _contentSize = size;
    _table = std::make_shared<UITableView>();
    _table->setFrame({ 0, 0, size.width, size.height });
    _table->setDataSource(self());
    return true;
}

const Rows& PSListController::specifiers()
{
    if (!_specifiers)
        _specifiers.emplace();
    return *_specifiers;
}

Rows PSListController::loadSpecifiersFromPlistName_target(
    const std::string& name, const std::shared_ptr<PSListController>& target)
{
    PSPageDefinition definition = loadPageDefinition(name, target);
    if (target && target->title().empty() && definition.title)
        target->setTitle(*definition.title);
    return std::move(definition.rows);
}

void PSListController::reloadSpecifiers()
{
    auto before = std::exchange(_specifiers, std::nullopt);
    _sections.reset();
    try {
        specifiers();
    } catch (...) {
        _specifiers = std::move(before);
        _sections.reset();
        throw;
    }
    _table->reloadData();
}

void PSListController::changeRows(const std::function<void()>& changes)
{
    const auto before = _specifiers;
    try {
        changes();
    } catch (...) {
        if (std::exchange(_specifiers, before) != before) {
            _sections.reset();
            _table->reloadData();
        }
        throw;
    }
}

const Row& PSListController::specifierAtIndex(std::size_t index)
{
    const Rows& rows = specifiers();
    if (index >= rows.size())
        raiseRangeError("specifierAtIndex:", index, rows.size());
    return rows[index];
}

const std::vector<PSListController::Section>& PSListController::sections()
{
    const Rows& rows = specifiers();
    if (_sections)
        return *_sections;
    _sections.emplace();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i]->isGroup()) {
            _sections->push_back({ rows[i], i + 1, 0 });
            continue;
        }
        if (_sections->empty())
            _sections->push_back({ nullptr, 0, 0 });
        ++_sections->back().count;
    }
    return *_sections;
}

std::size_t PSListController::indexForRow_inGroup(std::size_t row, std::size_t group)
{
    const auto& all = sections();
    if (group >= all.size())
        raiseRangeError("indexForRow:inGroup: group", group, all.size());
    if (row >= all[group].count)
        raiseRangeError("indexForRow:inGroup: row", row, all[group].count);
    return all[group].first + row;
}

std::size_t PSListController::sectionForIndex(std::size_t index)
{
    const auto& all = sections();
    std::size_t section = 0;
    for (std::size_t i = 0; i < all.size() && (all[i].group ? all[i].first - 1 : 0) <= index; ++i)
        section = i;
    return section;
}

std::optional<NSIndexPath> PSListController::indexPathForIndex(std::size_t index)
{
    if (index >= specifiers().size() || specifiers()[index]->isGroup())
        return std::nullopt;
    const std::size_t section = sectionForIndex(index);
    return NSIndexPath { section, index - sections()[section].first };
}

Row PSListController::groupOfSection(std::size_t section)
{
    return section < sections().size() ? sections()[section].group : nullptr;
}

std::optional<std::string> PSListController::footerOfGroup(const Row& group)
{
    return group ? group->propertyForKey(PSProperty::footerText).optionalString() : std::nullopt;
}

void PSListController::insertSpecifier_atIndex_animated(const Row& row, std::size_t index, bool animated)
{
    if (!_specifiers || !row)
        return;
    if (index > _specifiers->size())
        raiseRangeError("insertSpecifier:atIndex:animated:", index, _specifiers->size());
    _specifiers->insert(_specifiers->begin() + static_cast<std::ptrdiff_t>(index), row);
    _sections.reset();
    _table->noteInsertedItem(index, row, animated);
}

void PSListController::removeSpecifierAtIndex_animated(std::size_t index, bool animated)
{
    if (!_specifiers)
        return;
    if (index >= _specifiers->size())
        raiseRangeError("removeSpecifierAtIndex:animated:", index, _specifiers->size());
    const Row row = (*_specifiers)[index];
    removeRowAtIndex(*_specifiers, index);
    _sections.reset();
    _table->noteRemovedItem(index, row, animated);
}

Value PSListController::readPreferenceValue(const Row& row)
{
    if (!row)
        return {};
    const auto* domain = row->propertyForKey(PSProperty::defaults).string();
    const auto* key = row->propertyForKey(PSProperty::key).string();
    const auto stored = domain && key ? dictionaryWithContentsOfFile(pathOfDefaults(*domain)) : std::nullopt;
    const Value value = stored ? valueForKey(*stored, *key) : Value();
    return value.isNull() ? row->propertyForKey(PSProperty::defaultValue) : value;
}

void PSListController::setPreferenceValue_specifier(const Value& value, const Row& row)
{
    const auto* domain = row ? row->propertyForKey(PSProperty::defaults).string() : nullptr;
    const auto* key = row ? row->propertyForKey(PSProperty::key).string() : nullptr;
    if (!domain || !key)
        return;
    const std::string path = pathOfDefaults(*domain);
    Dictionary stored = dictionaryWithContentsOfFile(path).value_or(Dictionary());
    stored.insert_or_assign(*key, value);
    if (value.isNull())
        stored.erase(*key);
    if (const auto serialized = dataWithPropertyList(stored); serialized.data)
        writeToFile(*serialized.data, path, Atomically::Yes);
    row->postNotification();
}

void PSListController::viewDidLoad()
{
    specifiers();
}

void PSListController::traitCollectionDidChange()
{
    _table->reloadCells();
}

std::size_t PSListController::numberOfSectionsInTableView(UITableView& /*table*/)
{
    return sections().size();
}

std::size_t PSListController::tableView_numberOfRowsInSection(UITableView& /*table*/, std::size_t section)
{
    return section < sections().size() ? sections()[section].count : 0;
}

std::shared_ptr<NSObject> PSListController::tableView_itemForRowAtIndexPath(UITableView& /*table*/, NSIndexPath path)
{
    const auto& all = sections();
    if (path.section >= all.size() || path.row >= all[path.section].count)
        return nullptr;
    return specifiers()[all[path.section].first + path.row];
}

std::shared_ptr<UITableViewCell> PSListController::tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path)
{
    // A copy, because reading the row's value may rebuild the page.
    const Row row = rowAt(path);
    const Class& cls = classOfCell(*row);
    auto cell = cls.allocAs<PSTableCell>();
    if (!cell || !cell->initWithStyle_reuseIdentifier_specifier(styleOfCell(*row), cls.name(), row))
        return nullptr;
    cell->setFrame({ 0, 0, table.frame().width, cell->preferredHeightForWidth(table.frame().width) });
    return cell;
}

double PSListController::tableView_estimatedHeightForRowAtIndexPath(UITableView& /*table*/, NSIndexPath /*path*/)
{
    return rowHeight;
}

double PSListController::tableView_heightForRowAtIndexPath(UITableView& table, NSIndexPath path)
{
    const auto cell = std::dynamic_pointer_cast<PSTableCell>(table.loadCellForRowAtIndexPath(path));
    return cell ? cell->preferredHeightForWidth(table.frame().width) : rowHeight;
}

bool PSListController::tableView_shouldHighlightRowAtIndexPath(UITableView& /*table*/, NSIndexPath path)
{
    const PSCellType type = rowAt(path)->cellType();
    return type == PSCellType::Link || type == PSCellType::LinkList || type == PSCellType::Button;
}

void PSListController::tableView_didSelectRowAtIndexPath(UITableView& table, NSIndexPath path)
{
    const Row row = rowAt(path);
    table.deselectRowAtIndexPath_animated(path, true);
    if (!row->buttonAction().empty())
        row->performButtonAction();
    else if (row->detailControllerClass())
        openDetail(row, *row->detailControllerClass());
}

void PSListController::openDetail(const Row& row, const Class& detail)
{
    const auto navigation = navigationController();
    const auto page = detail.allocAs<PSListController>();
    if (!navigation || !page || !page->initForContentSize(_contentSize))
        return;
    page->setParentController(self());
    page->setSpecifier(row);
    page->setTitle(row->name().value_or(std::string()));
    navigation->pushViewController_animated(page, true);
}
