#pragma once

#include "UIKit/NSIndexPath.h"
#include "UIKit/UITableViewCell.h"

#include <unordered_map>
#include <vector>

class UITableView;

enum class UITableViewRowAnimation {
    Fade = 0,
    Right = 1,
    Left = 2,
    Top = 3,
    Bottom = 4,
    None = 5,
    Middle = 6,
    Automatic = 100
};

/// What a table shows, and what happens when its rows are touched. Implemented by list pages.
class UITableViewDataSource {
public:
    virtual ~UITableViewDataSource() = default;

    virtual std::size_t numberOfSectionsInTableView(UITableView& table) = 0;
    virtual std::size_t tableView_numberOfRowsInSection(UITableView& table, std::size_t section) = 0;
    /// The object that stands behind the row: the cell is kept for it until it is reloaded. Null for a row that is not
    /// there.
    virtual std::shared_ptr<NSObject> tableView_itemForRowAtIndexPath(UITableView& table, NSIndexPath path) = 0;
    /// A cell, made and set up.
    virtual std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) = 0;
    /// Points, before the cell is made.
    virtual double tableView_estimatedHeightForRowAtIndexPath(UITableView& table, NSIndexPath path) = 0;
    virtual double tableView_heightForRowAtIndexPath(UITableView& table, NSIndexPath path) = 0;
    virtual bool tableView_shouldHighlightRowAtIndexPath(UITableView& table, NSIndexPath path) = 0;
    virtual void tableView_didSelectRowAtIndexPath(UITableView& table, NSIndexPath path) = 0;
};

/// Told of every change of a table's rows as it happens. All have an empty body: an observer answers those it shows.
/// Indices count all items of the page, those of groups too.
class UITableViewObserver {
public:
    virtual ~UITableViewObserver() = default;
    virtual void didInsertItem(std::size_t /*index*/, const std::shared_ptr<NSObject>& /*item*/, bool /*animated*/) { }
    virtual void didRemoveItem(std::size_t /*index*/, const std::shared_ptr<NSObject>& /*item*/, bool /*animated*/) { }
    /// The items were dropped and built anew.
    virtual void didReloadData() { }
    virtual void didReloadSection(std::size_t /*section*/, UITableViewRowAnimation /*animation*/) { }
    /// The items are the same, and their cells are to be made anew.
    virtual void didReloadCells() { }
};

/// The cells of a list page. A cell is made when it is first asked for and kept until its row goes, is reloaded, or has
/// left the screen.
class UITableView final : public UIView {
    NS_CLASS(UITableView, UIView)
public:
    /// Held weakly, as the page owns the table.
    void setDataSource(std::weak_ptr<UITableViewDataSource> source) { _dataSource = std::move(source); }
    /// Observers are held weakly; there is one at a time, the host.
    void setObserver(std::weak_ptr<UITableViewObserver> observer) { _observer = std::move(observer); }
    std::shared_ptr<UITableViewObserver> observer() const { return _observer.lock(); }

    /// The cell that is on the screen; null when there is none yet.
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(NSIndexPath path);
    /// The cell on the screen, made where there is none yet; null for a row that is not there.
    std::shared_ptr<UITableViewCell> loadCellForRowAtIndexPath(NSIndexPath path);
    /// Called by a host with a screen for a cell that it shows no more, so that a long list holds few cells.
    void endDisplayingCell(const NSObject& item, const UITableViewCell& cell);

    std::optional<NSIndexPath> indexPathForSelectedRow() const { return _selected; }
    void selectRowAtIndexPath(NSIndexPath path) { _selected = path; }
    void deselectRowAtIndexPath_animated(NSIndexPath path, bool animated);

    /// Nothing is shown of the reloads between the two until the updates end.
    void beginUpdates() { ++_updates; }
    void endUpdates();
    /// Sections that are not there are passed over.
    void reloadSections_withRowAnimation(const std::vector<std::size_t>& sections, UITableViewRowAnimation animation);

    /// The list has changed its items already.
    void noteInsertedItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated);
    void noteRemovedItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated);
    void reloadData();
    /// Makes every cell anew for the same items, as when the appearance has changed.
    void reloadCells();

private:
    struct SectionReload {
        std::size_t section;
        UITableViewRowAnimation animation;
    };

    void flushReloads();

    std::weak_ptr<UITableViewDataSource> _dataSource;
    std::weak_ptr<UITableViewObserver> _observer;
    std::unordered_map<const NSObject*, std::shared_ptr<UITableViewCell>> _cells;
    std::optional<NSIndexPath> _selected;
    std::vector<SectionReload> _pendingReloads;
    int _updates = 0;
};
