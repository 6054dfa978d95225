#include "UIKit/UITableView.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using Strings = std::vector<std::string>;
using Items = std::vector<std::shared_ptr<NSObject>>;

class Item final : public NSObject {
    NS_CLASS(Item, NSObject)
public:
    Item() = default;
    explicit Item(std::string name)
        : name(std::move(name))
    {
    }
    std::string name;
};

NS_IMPLEMENTATION(Item)

std::string nameOf(const std::shared_ptr<NSObject>& object)
{
    const auto item = std::dynamic_pointer_cast<Item>(object);
    return item ? item->name : "nothing";
}

/// Sections of items; writes down the cells that it makes.
class FakeDataSource final : public UITableViewDataSource {
public:
    std::vector<Items> sections;
    Strings made;
    bool makesCells = true;

    std::size_t numberOfSectionsInTableView(UITableView&) override { return sections.size(); }
    std::size_t tableView_numberOfRowsInSection(UITableView&, std::size_t section) override
    {
        return section < sections.size() ? sections[section].size() : 0;
    }
    std::shared_ptr<NSObject> tableView_itemForRowAtIndexPath(UITableView& table, NSIndexPath path) override
    {
        return path.row < tableView_numberOfRowsInSection(table, path.section) ? sections[path.section][path.row]
                                                                               : nullptr;
    }
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override
    {
        made.push_back(nameOf(tableView_itemForRowAtIndexPath(table, path)));
        return makesCells ? std::make_shared<UITableViewCell>() : nullptr;
    }
    double tableView_estimatedHeightForRowAtIndexPath(UITableView&, NSIndexPath) override { return 44; }
    double tableView_heightForRowAtIndexPath(UITableView&, NSIndexPath) override { return 44; }
    bool tableView_shouldHighlightRowAtIndexPath(UITableView&, NSIndexPath) override { return true; }
    void tableView_didSelectRowAtIndexPath(UITableView&, NSIndexPath) override { }
};

class FakeTableObserver final : public UITableViewObserver {
public:
    Strings lines;

    void didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override
    {
        lines.push_back("insert " + std::to_string(index) + " " + nameOf(item) + (animated ? " animated" : ""));
    }
    void didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override
    {
        lines.push_back("remove " + std::to_string(index) + " " + nameOf(item) + (animated ? " animated" : ""));
    }
    void didReloadData() override { lines.emplace_back("reload"); }
    void didReloadSection(std::size_t section, UITableViewRowAnimation animation) override
    {
        lines.push_back("section " + std::to_string(section) + " " + std::to_string(static_cast<int>(animation)));
    }
    void didReloadCells() override { lines.emplace_back("cells"); }
};

/// A table of the sections a0 a1, none, and c0 c1 c2.
class Tables : public ::testing::Test {
protected:
    Tables()
    {
        source->sections = { { itemOf("a0"), itemOf("a1") }, {}, { itemOf("c0"), itemOf("c1"), itemOf("c2") } };
        table->setDataSource(source);
        table->setObserver(observer);
    }
    static std::shared_ptr<NSObject> itemOf(const std::string& name) { return std::make_shared<Item>(name); }

    void loadAll()
    {
        for (std::size_t section = 0; section < source->sections.size(); ++section) {
            for (std::size_t row = 0; row < source->sections[section].size(); ++row)
                table->loadCellForRowAtIndexPath({ section, row });
        }
        source->made.clear();
    }
    /// The rows whose cells are on the screen.
    Strings shown()
    {
        Strings names;
        for (std::size_t section = 0; section < source->sections.size(); ++section) {
            for (std::size_t row = 0; row < source->sections[section].size(); ++row) {
                if (table->cellForRowAtIndexPath({ section, row }))
                    names.push_back(nameOf(source->sections[section][row]));
            }
        }
        return names;
    }

    const std::shared_ptr<FakeDataSource> source = std::make_shared<FakeDataSource>();
    const std::shared_ptr<FakeTableObserver> observer = std::make_shared<FakeTableObserver>();
    const std::shared_ptr<UITableView> table = std::make_shared<UITableView>();
};

TEST_F(Tables, MakeACellWhenItIsFirstLoadedAndKeepIt)
{
    EXPECT_EQ(table->cellForRowAtIndexPath({ 0, 1 }), nullptr);
    const auto cell = table->loadCellForRowAtIndexPath({ 0, 1 });
    ASSERT_TRUE(cell);
    EXPECT_EQ(table->cellForRowAtIndexPath({ 0, 1 }), cell);
    EXPECT_EQ(table->loadCellForRowAtIndexPath({ 0, 1 }), cell);
    EXPECT_EQ(source->made, Strings { "a1" });
}

TEST_F(Tables, HaveNoCellOfARowThatIsNotThere)
{
    for (const NSIndexPath& path : { NSIndexPath { 0, 2 }, { 1, 0 }, { 3, 0 }, { SIZE_MAX, 0 }, { 0, SIZE_MAX } }) {
        EXPECT_EQ(table->cellForRowAtIndexPath(path), nullptr);
        EXPECT_EQ(table->loadCellForRowAtIndexPath(path), nullptr);
    }
    EXPECT_EQ(source->made, Strings {});
}

TEST_F(Tables, AskAgainForACellThatCouldNotBeMade)
{
    source->makesCells = false;
    EXPECT_EQ(table->loadCellForRowAtIndexPath({ 0, 0 }), nullptr);
    source->makesCells = true;
    EXPECT_TRUE(table->loadCellForRowAtIndexPath({ 0, 0 }));
}

TEST_F(Tables, KeepTheCellOfARowThatMoves)
{
    const auto cell = table->loadCellForRowAtIndexPath({ 2, 0 });
    const auto item = itemOf("new");
    source->sections[2].insert(source->sections[2].begin(), item);
    table->noteInsertedItem(2, item, true);
    EXPECT_EQ(table->cellForRowAtIndexPath({ 2, 1 }), cell);
    EXPECT_EQ(table->cellForRowAtIndexPath({ 2, 0 }), nullptr);
    EXPECT_EQ(observer->lines, Strings { "insert 2 new animated" });
}

TEST_F(Tables, DropTheCellOfARowThatGoes)
{
    loadAll();
    const auto item = source->sections[2][1];
    const std::weak_ptr<UITableViewCell> watched = table->cellForRowAtIndexPath({ 2, 1 });
    source->sections[2].erase(source->sections[2].begin() + 1);
    table->noteRemovedItem(3, item, false);
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(shown(), (Strings { "a0", "a1", "c0", "c2" }));
    EXPECT_EQ(observer->lines, Strings { "remove 3 c1" });
}

TEST_F(Tables, MakeEveryCellAnewAfterAReload)
{
    loadAll();
    table->reloadData();
    EXPECT_EQ(shown(), Strings {});
    EXPECT_EQ(observer->lines, Strings { "reload" });
    table->loadCellForRowAtIndexPath({ 0, 0 });
    EXPECT_EQ(source->made, Strings { "a0" });
}

TEST_F(Tables, MakeEveryCellAnewForTheSameRowsWhenTheAppearanceChanges)
{
    loadAll();
    table->selectRowAtIndexPath({ 0, 1 });
    table->reloadCells();
    EXPECT_EQ(shown(), Strings {});
    EXPECT_EQ(observer->lines, Strings { "cells" });
    EXPECT_EQ(table->indexPathForSelectedRow(), (NSIndexPath { 0, 1 }));
}

TEST_F(Tables, MakeTheCellsOfAReloadedSectionAnew)
{
    loadAll();
    table->reloadSections_withRowAnimation({ 2 }, UITableViewRowAnimation::Fade);
    EXPECT_EQ(shown(), (Strings { "a0", "a1" }));
    EXPECT_EQ(observer->lines, Strings { "section 2 0" });
}

TEST_F(Tables, ReloadSectionsWhenTheUpdatesEnd)
{
    loadAll();
    table->beginUpdates();
    table->reloadSections_withRowAnimation({ 2 }, UITableViewRowAnimation::None);
    table->reloadSections_withRowAnimation({ 0, 1 }, UITableViewRowAnimation::Automatic);
    EXPECT_EQ(shown(), (Strings { "a0", "a1", "c0", "c1", "c2" }));
    EXPECT_EQ(observer->lines, Strings {});
    table->endUpdates();
    EXPECT_EQ(shown(), Strings {});
    EXPECT_EQ(observer->lines, (Strings { "section 2 5", "section 0 100", "section 1 100" }));
}

TEST_F(Tables, ReloadSectionsWhenTheOutermostOfNestedUpdatesEnds)
{
    loadAll();
    table->beginUpdates();
    table->beginUpdates();
    table->reloadSections_withRowAnimation({ 0 }, UITableViewRowAnimation::None);
    table->endUpdates();
    EXPECT_EQ(observer->lines, Strings {});
    table->endUpdates();
    EXPECT_EQ(observer->lines, Strings { "section 0 5" });
}

TEST_F(Tables, EndUpdatesThatDidNotBeginWithoutHarm)
{
    loadAll();
    table->endUpdates();
    table->beginUpdates();
    table->reloadSections_withRowAnimation({ 0 }, UITableViewRowAnimation::None);
    EXPECT_EQ(observer->lines, Strings {});
    table->endUpdates();
    EXPECT_EQ(observer->lines, Strings { "section 0 5" });
}

TEST_F(Tables, ForgetSectionsToReloadWhenAllIsReloaded)
{
    table->beginUpdates();
    table->reloadSections_withRowAnimation({ 0 }, UITableViewRowAnimation::None);
    table->reloadData();
    table->endUpdates();
    EXPECT_EQ(observer->lines, Strings { "reload" });
}

TEST_F(Tables, DoNotReloadASectionThatIsNotThere)
{
    loadAll();
    table->reloadSections_withRowAnimation({ 3, SIZE_MAX }, UITableViewRowAnimation::None);
    table->reloadSections_withRowAnimation({}, UITableViewRowAnimation::None);
    EXPECT_EQ(shown(), (Strings { "a0", "a1", "c0", "c1", "c2" }));
    EXPECT_EQ(observer->lines, Strings {});
}

TEST_F(Tables, RememberTheSelectedRowUntilItIsDeselected)
{
    EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
    table->selectRowAtIndexPath({ 0, 1 });
    table->deselectRowAtIndexPath_animated({ 2, 1 }, true);
    EXPECT_EQ(table->indexPathForSelectedRow(), (NSIndexPath { 0, 1 }));
    table->deselectRowAtIndexPath_animated({ 0, 1 }, true);
    EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
}

TEST_F(Tables, ForgetTheSelectedRowWhenRowsChange)
{
    const std::function<void()> changes[] = {
        [&] { table->reloadData(); },
        [&] { table->noteInsertedItem(0, itemOf("new"), true); },
        [&] { table->noteRemovedItem(0, itemOf("old"), true); },
    };
    for (const auto& change : changes) {
        table->selectRowAtIndexPath({ 0, 0 });
        change();
        EXPECT_EQ(table->indexPathForSelectedRow(), std::nullopt);
    }
}

TEST_F(Tables, WithoutADataSourceHaveNoCells)
{
    loadAll();
    table->setDataSource(std::weak_ptr<UITableViewDataSource>());
    EXPECT_EQ(table->cellForRowAtIndexPath({ 0, 0 }), nullptr);
    EXPECT_EQ(table->loadCellForRowAtIndexPath({ 0, 0 }), nullptr);
    table->reloadSections_withRowAnimation({ 0 }, UITableViewRowAnimation::None);
    table->reloadData();
    EXPECT_EQ(observer->lines, Strings { "reload" });
}

TEST(TablesWithoutAnObserver, TellNobody)
{
    const auto table = std::make_shared<UITableView>();
    table->setObserver(std::make_shared<FakeTableObserver>());
    table->noteInsertedItem(0, nullptr, true);
    table->noteRemovedItem(0, nullptr, true);
    table->reloadSections_withRowAnimation({ 0 }, UITableViewRowAnimation::None);
    table->reloadCells();
    table->reloadData();
}

TEST_F(Tables, DoNotKeepTheirDataSourceAlive)
{
    auto gone = std::make_shared<FakeDataSource>();
    const std::weak_ptr<FakeDataSource> watched = gone;
    table->setDataSource(gone);
    gone.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(table->loadCellForRowAtIndexPath({ 0, 0 }), nullptr);
}

} // namespace
