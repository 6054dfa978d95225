#include "UIKit/UITableView.h"

NS_IMPLEMENTATION(UITableView)

std::shared_ptr<UITableViewCell> UITableView::cellForRowAtIndexPath(NSIndexPath path)
{
    const auto source = _dataSource.lock();
    const auto item = source ? source->tableView_itemForRowAtIndexPath(*this, path) : nullptr;
    const auto found = _cells.find(item.get());
    return found == _cells.end() ? nullptr : found->second;
}

std::shared_ptr<UITableViewCell> UITableView::loadCellForRowAtIndexPath(NSIndexPath path)
{
    const auto source = _dataSource.lock();
    const auto item = source ? source->tableView_itemForRowAtIndexPath(*this, path) : nullptr;
    if (!item)
        return nullptr;
    if (const auto found = _cells.find(item.get()); found != _cells.end())
        return found->second;
    auto cell = source->tableView_cellForRowAtIndexPath(*this, path);
    if (cell)
        _cells.emplace(item.get(), cell);
    return cell;
}

void UITableView::endDisplayingCell(const NSObject& item, const UITableViewCell& cell)
{
    const auto found = _cells.find(&item);
    if (found != _cells.end() && found->second.get() == &cell)
        _cells.erase(found);
}

void UITableView::deselectRowAtIndexPath_animated(NSIndexPath path, bool /*animated*/)
{
    if (_selected == path)
        _selected.reset();
}

void UITableView::endUpdates()
{
    if (_updates > 0 && --_updates == 0)
        flushReloads();
}

void UITableView::reloadSections_withRowAnimation(
    const std::vector<std::size_t>& sections, UITableViewRowAnimation animation)
{
    for (const std::size_t section : sections)
        _pendingReloads.push_back({ section, animation });
    if (_updates == 0)
        flushReloads();
}

void UITableView::flushReloads()
{
    const auto source = _dataSource.lock();
    const auto reloads = std::exchange(_pendingReloads, {});
    for (const SectionReload& reload : reloads) {
        if (!source || reload.section >= source->numberOfSectionsInTableView(*this))
            continue;
        const std::size_t rows = source->tableView_numberOfRowsInSection(*this, reload.section);
        for (std::size_t row = 0; row < rows; ++row)
            _cells.erase(source->tableView_itemForRowAtIndexPath(*this, { reload.section, row }).get());
        if (const auto observer = _observer.lock())
            observer->didReloadSection(reload.section, reload.animation);
    }
}

void UITableView::noteInsertedItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated)
{
    _selected.reset();
    if (const auto observer = _observer.lock())
        observer->didInsertItem(index, item, animated);
}

void UITableView::noteRemovedItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated)
{
    _selected.reset();
    _cells.erase(item.get());
    if (const auto observer = _observer.lock())
        observer->didRemoveItem(index, item, animated);
}

void UITableView::reloadData()
{
    _selected.reset();
    _cells.clear();
    _pendingReloads.clear();
    if (const auto observer = _observer.lock())
        observer->didReloadData();
}

void UITableView::reloadCells()
{
    _cells.clear();
    if (const auto observer = _observer.lock())
        observer->didReloadCells();
}
