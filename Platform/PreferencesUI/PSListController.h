#pragma once

#include "PreferencesUI/PSTableCell.h"
#include "UIKit/UITableView.h"
#include "UIKit/UIViewController.h"

#include <functional>

/// A settings page: a list of rows in groups, each shown by a cell. Pages override `specifiers` to say which rows they
/// have.
class PSListController : public UIViewController, public UITableViewDataSource {
    NS_CLASS(PSListController, UIViewController)
public:
    ~PSListController() override;

    /// Called once, after the page was allocated, with the size that it will be shown in; false when no page could be
    /// made.
    virtual bool initForContentSize(CGSize size);

    /// The rows, built at the first call and kept. Pages that define their rows elsewhere override this.
    virtual const Rows& specifiers();
    /// The rows of the page definition "<name>.plist" in the bundle of the target's class, made anew at each call with
    /// the target as the one that reads and writes them; none when the file is missing or no page definition.
    Rows loadSpecifiersFromPlistName_target(const std::string& name, const std::shared_ptr<PSListController>& target);
    /// Drops the rows, builds them again through `specifiers` and shows them. When building raises, the page stays as
    /// it was and the error goes on.
    void reloadSpecifiers();

    /// Raises std::out_of_range when there is no such row.
    const Row& specifierAtIndex(std::size_t index);
    /// The index of a row of a section among all rows. Raises std::out_of_range when there is no such row.
    std::size_t indexForRow_inGroup(std::size_t row, std::size_t group);
    /// The place of the row of that index; nothing for a group or an index that is none.
    std::optional<NSIndexPath> indexPathForIndex(std::size_t index);
    /// The section that the row or group of that index belongs to.
    std::size_t sectionForIndex(std::size_t index);
    /// The group that heads the section; null for the section of the rows that stand before the first group.
    Row groupOfSection(std::size_t section);
    /// The text below the group of that row; nothing where there is none. Called by hosts when they show or print it,
    /// so a page may give a text that takes long to find.
    virtual std::optional<std::string> footerOfGroup(const Row& group);

    /// Both do nothing before the rows are built, and raise std::out_of_range for an index that is not in the list.
    void insertSpecifier_atIndex_animated(const Row& row, std::size_t index, bool animated);
    void removeSpecifierAtIndex_animated(std::size_t index, bool animated);

    /// The row's value in the property list file of its "defaults" domain, else its "default".
    virtual Value readPreferenceValue(const Row& row);
    /// Stores the value in the file of the row's "defaults" domain and posts the row's notification.
    virtual void setPreferenceValue_specifier(const Value& value, const Row& row);

    /// The page that opened this one; null for the first.
    std::shared_ptr<PSListController> parentController() const { return _parentController.lock(); }
    void setParentController(const std::shared_ptr<PSListController>& parent) { _parentController = parent; }
    /// The entry by which this page was opened; null for none.
    const Row& specifier() const { return _specifier; }
    void setSpecifier(const Row& row) { _specifier = row; }
    UITableView& table() { return *_table; }

    // UIViewController
    void viewDidLoad() override;
    void traitCollectionDidChange() override;

    // UITableViewDataSource
    std::size_t numberOfSectionsInTableView(UITableView& table) override;
    std::size_t tableView_numberOfRowsInSection(UITableView& table, std::size_t section) override;
    std::shared_ptr<NSObject> tableView_itemForRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    double tableView_estimatedHeightForRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    double tableView_heightForRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    bool tableView_shouldHighlightRowAtIndexPath(UITableView& table, NSIndexPath path) override;
    /// Performs the row's action, or opens the page of its detail class.
    void tableView_didSelectRowAtIndexPath(UITableView& table, NSIndexPath path) override;

protected:
    /// Makes changes to the rows that belong together. When one of them raises, the rows are shown again as they stood
    /// before, and the error goes on.
    void changeRows(const std::function<void()>& changes);
    /// The row of an index path. Raises std::out_of_range when there is none.
    const Row& rowAt(NSIndexPath path) { return specifierAtIndex(indexForRow_inGroup(path.row, path.section)); }

    /// The rows as they stand; nothing until they are first built.
    std::optional<Rows> _specifiers;

private:
    struct Section {
        Row group;
        std::size_t first = 0;
        std::size_t count = 0;
    };

    const std::vector<Section>& sections();
    void openDetail(const Row& row, const Class& detail);

    std::shared_ptr<UITableView> _table;
    std::weak_ptr<PSListController> _parentController;
    Row _specifier;
    CGSize _contentSize;
    /// Derived from the rows when it is needed; empty when they have changed since.
    std::optional<std::vector<Section>> _sections;
};
