#include "Platform/PhoneTest.h"

#include <functional>
#include <limits>
#include <stdexcept>

namespace {

constexpr CGSize size { 375, 667 };
constexpr const char* domain = "com.vexil.other";
constexpr const char* domainPath = "/var/mobile/Library/Preferences/com.vexil.other.plist";
constexpr std::size_t endless = std::numeric_limits<std::size_t>::max();

/// A page whose rows the test gives.
class ListPage final : public PSListController {
    NS_CLASS(ListPage, PSListController)
public:
    std::function<Rows()> build;
    std::function<void()> onRead;
    Strings calls;

    const Rows& specifiers() override
    {
        if (!build)
            return Super::specifiers();
        if (!_specifiers)
            _specifiers = build();
        return *_specifiers;
    }
    Value readPreferenceValue(const Row& row) override
    {
        if (onRead)
            std::exchange(onRead, nullptr)();
        return Super::readPreferenceValue(row);
    }
    void act(const Row& row) { calls.push_back("act " + row->identifier().value_or("-")); }
};

/// A page that a row may open, and one that cannot be made, and one that raises while it loads.
class DetailPage : public PSListController {
    NS_CLASS(DetailPage, PSListController)
};
class UnmadePage final : public DetailPage {
    NS_CLASS(UnmadePage, DetailPage)
public:
    bool initForContentSize(CGSize) override { return false; }
};
class RaisingPage final : public DetailPage {
    NS_CLASS(RaisingPage, DetailPage)
public:
    const Rows& specifiers() override { throw std::out_of_range("no such row"); }
};
class PlainCell final : public PSTableCell {
    NS_CLASS(PlainCell, PSTableCell)
};

NS_IMPLEMENTATION(ListPage, NS_METHOD(act))
NS_IMPLEMENTATION(DetailPage)
NS_IMPLEMENTATION(UnmadePage)
NS_IMPLEMENTATION(RaisingPage)
NS_IMPLEMENTATION(PlainCell)

class ListPages : public PhoneTest {
protected:
    ListPages() { navigation->setObserver(screen); }

    Row rowOf(const std::string& identifier, PSCellType type = PSCellType::Link, const Class* detail = nullptr) const
    {
        Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit("Name of " + identifier, page,
            "setPreferenceValue:specifier:", "readPreferenceValue:", detail, type, nullptr);
        row->setIdentifier(identifier);
        return row;
    }
    /// Rows of those identifiers; those that begin with "G" are groups.
    Rows rowsOf(const Strings& identifiers) const
    {
        Rows rows;
        for (const std::string& identifier : identifiers)
            rows.push_back(rowOf(identifier, identifier.starts_with("G") ? PSCellType::Group : PSCellType::Link));
        return rows;
    }
    void open(const Rows& rows)
    {
        page->build = [rows] { return rows; };
        open();
    }
    void open()
    {
        page->initForContentSize(size);
        navigation->pushViewController_animated(page, false);
        screen->lines.clear();
        page->calls.clear();
    }
    /// The sections: the group, "-" for none, and the rows in brackets.
    std::string sections()
    {
        std::string text;
        for (std::size_t section = 0; section < page->numberOfSectionsInTableView(page->table()); ++section) {
            const Row group = page->groupOfSection(section);
            text += text.empty() ? "" : " ";
            text += (group ? *group->identifier() : "-") + "(";
            const std::size_t rows = page->tableView_numberOfRowsInSection(page->table(), section);
            for (std::size_t row = 0; row < rows; ++row) {
                const std::size_t index = page->indexForRow_inGroup(row, section);
                text += (row == 0 ? "" : " ") + *page->specifierAtIndex(index)->identifier();
                EXPECT_EQ(page->indexPathForIndex(index), (NSIndexPath { section, row }));
                EXPECT_EQ(page->sectionForIndex(index), section);
                EXPECT_EQ(page->tableView_itemForRowAtIndexPath(page->table(), { section, row }),
                    page->specifierAtIndex(index));
            }
            text += ")";
        }
        return text;
    }
    std::string sectionsOf(const Strings& identifiers)
    {
        page = std::make_shared<ListPage>();
        open(rowsOf(identifiers));
        return sections();
    }
    static std::string errorOf(const std::function<void()>& act)
    {
        try {
            act();
        } catch (const std::out_of_range& error) {
            return error.what();
        }
        return "none";
    }
    std::shared_ptr<PSTableCell> cellAt(NSIndexPath path)
    {
        return std::dynamic_pointer_cast<PSTableCell>(page->table().loadCellForRowAtIndexPath(path));
    }
    void tap(NSIndexPath path)
    {
        page->table().selectRowAtIndexPath(path);
        page->tableView_didSelectRowAtIndexPath(page->table(), path);
    }

    const std::shared_ptr<ScreenRecorder> screen = std::make_shared<ScreenRecorder>();
    const std::shared_ptr<UINavigationController> navigation = std::make_shared<UINavigationController>();
    std::shared_ptr<ListPage> page = std::make_shared<ListPage>();
};

TEST_F(ListPages, RowsBeforeTheFirstGroupAreASectionOfTheirOwn)
{
    EXPECT_EQ(sectionsOf({ "a", "b", "G1", "c" }), "-(a b) G1(c)");
    EXPECT_EQ(sectionsOf({ "a" }), "-(a)");
}

TEST_F(ListPages, GroupsAreSectionsThoughTheyAreEmpty)
{
    EXPECT_EQ(sectionsOf({ "G1", "a", "G2", "G3", "b", "c", "G4" }), "G1(a) G2() G3(b c) G4()");
    EXPECT_EQ(sectionsOf({ "G1" }), "G1()");
    EXPECT_EQ(sectionsOf({ "a", "G1", "G2" }), "-(a) G1() G2()");
}

TEST_F(ListPages, WithoutRowsHaveNoSections)
{
    EXPECT_EQ(sectionsOf({}), "");
    EXPECT_EQ(page->sectionForIndex(0), 0U);
    EXPECT_EQ(page->groupOfSection(0), nullptr);
}

TEST_F(ListPages, BelongToTheirSectionByIndexGroupsIncluded)
{
    sectionsOf({ "a", "G1", "G2", "b", "c" });
    std::string found;
    for (std::size_t index = 0; index < 5; ++index)
        found += std::to_string(page->sectionForIndex(index));
    EXPECT_EQ(found, "01222");
    EXPECT_EQ(page->indexPathForIndex(1), std::nullopt);
    EXPECT_EQ(page->indexPathForIndex(2), std::nullopt);
    EXPECT_EQ(page->indexPathForIndex(5), std::nullopt);
    EXPECT_EQ(page->indexPathForIndex(endless), std::nullopt);
    EXPECT_EQ(page->groupOfSection(0), nullptr);
    EXPECT_EQ(page->groupOfSection(3), nullptr);
}

TEST_F(ListPages, RaiseARangeErrorForRowsThatAreNotThere)
{
    open(rowsOf({ "G1", "a", "G2" }));
    EXPECT_EQ(
        errorOf([&] { page->specifierAtIndex(3); }), "specifierAtIndex: index 3 beyond bounds of a list of 3 rows");
    EXPECT_EQ(errorOf([&] { page->specifierAtIndex(endless); }),
        "specifierAtIndex: index 18446744073709551615 beyond bounds of a list of 3 rows");
    EXPECT_EQ(errorOf([&] { page->indexForRow_inGroup(1, 0); }),
        "indexForRow:inGroup: row index 1 beyond bounds of a list of 1 rows");
    EXPECT_EQ(errorOf([&] { page->indexForRow_inGroup(0, 1); }),
        "indexForRow:inGroup: row index 0 beyond bounds of a list of 0 rows");
    EXPECT_EQ(errorOf([&] { page->indexForRow_inGroup(0, 2); }),
        "indexForRow:inGroup: group index 2 beyond bounds of a list of 2 rows");
    EXPECT_EQ(errorOf([&] { tap({ 0, 1 }); }), "indexForRow:inGroup: row index 1 beyond bounds of a list of 1 rows");
}

TEST_F(ListPages, AnswerTheTableWithNothingForRowsThatAreNotThere)
{
    open(rowsOf({ "G1", "a" }));
    EXPECT_EQ(page->tableView_numberOfRowsInSection(page->table(), 1), 0U);
    EXPECT_EQ(page->tableView_itemForRowAtIndexPath(page->table(), { 0, 1 }), nullptr);
    EXPECT_EQ(page->tableView_itemForRowAtIndexPath(page->table(), { endless, endless }), nullptr);
    EXPECT_EQ(cellAt({ 0, 1 }), nullptr);
    EXPECT_EQ(cellAt({ 1, 0 }), nullptr);
}

TEST_F(ListPages, InsertRowsAndGroups)
{
    open(rowsOf({ "G1", "a", "b" }));
    page->insertSpecifier_atIndex_animated(rowOf("new"), 2, true);
    EXPECT_EQ(sections(), "G1(a new b)");
    page->insertSpecifier_atIndex_animated(rowOf("G2", PSCellType::Group), 3, false);
    EXPECT_EQ(sections(), "G1(a new) G2(b)");
    page->insertSpecifier_atIndex_animated(rowOf("first"), 0, true);
    EXPECT_EQ(sections(), "-(first) G1(a new) G2(b)");
    page->insertSpecifier_atIndex_animated(rowOf("last"), 6, true);
    EXPECT_EQ(sections(), "-(first) G1(a new) G2(b last)");
    EXPECT_EQ(screen->lines,
        (Strings { "insert 2 new animated", "insert 3 G2", "insert 0 first animated", "insert 6 last animated" }));
}

TEST_F(ListPages, RemoveRowsAndGroups)
{
    open(rowsOf({ "a", "G1", "b", "G2", "c" }));
    page->removeSpecifierAtIndex_animated(3, true);
    EXPECT_EQ(sections(), "-(a) G1(b c)");
    page->removeSpecifierAtIndex_animated(1, false);
    EXPECT_EQ(sections(), "-(a b c)");
    page->removeSpecifierAtIndex_animated(2, true);
    page->removeSpecifierAtIndex_animated(0, true);
    page->removeSpecifierAtIndex_animated(0, true);
    EXPECT_EQ(sections(), "");
    EXPECT_EQ(screen->lines,
        (Strings { "remove 3 G2 animated", "remove 1 G1", "remove 2 c animated", "remove 0 a animated",
            "remove 0 b animated" }));
}

TEST_F(ListPages, RaiseARangeErrorForChangesOutsideOfTheListAndStayAsTheyWere)
{
    open(rowsOf({ "a" }));
    for (const std::size_t index : { std::size_t { 2 }, endless }) {
        EXPECT_EQ(errorOf([&] { page->insertSpecifier_atIndex_animated(rowOf("new"), index, true); }),
            "insertSpecifier:atIndex:animated: index " + std::to_string(index) + " beyond bounds of a list of 1 rows");
    }
    for (const std::size_t index : { std::size_t { 1 }, endless }) {
        EXPECT_EQ(errorOf([&] { page->removeSpecifierAtIndex_animated(index, true); }),
            "removeSpecifierAtIndex:animated: index " + std::to_string(index) + " beyond bounds of a list of 1 rows");
    }
    EXPECT_EQ(sections(), "-(a)");
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(ListPages, DoNotChangeBeforeTheirRowsAreBuilt)
{
    page->build = [this] { return rowsOf({ "a" }); };
    page->initForContentSize(size);
    page->table().setObserver(screen);
    page->insertSpecifier_atIndex_animated(rowOf("new"), 0, true);
    page->insertSpecifier_atIndex_animated(rowOf("new"), 7, true);
    page->removeSpecifierAtIndex_animated(7, true);
    EXPECT_EQ(sections(), "-(a)");
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(ListPages, InsertNothing)
{
    open(rowsOf({ "a" }));
    page->insertSpecifier_atIndex_animated(nullptr, 0, true);
    page->insertSpecifier_atIndex_animated(nullptr, 7, true);
    EXPECT_EQ(sections(), "-(a)");
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(ListPages, BuildTheirRowsOnceWhenTheyLoad)
{
    int builds = 0;
    page->build = [&] {
        ++builds;
        return rowsOf({ "a" });
    };
    page->initForContentSize(size);
    page->specifiers();
    page->loadViewIfNeeded();
    page->specifiers();
    EXPECT_EQ(builds, 1);
}

TEST_F(ListPages, ReloadBuildsTheRowsAgainAndShowsThem)
{
    open(rowsOf({ "a", "b" }));
    const auto before = cellAt({ 0, 0 });
    page->build = [this] { return rowsOf({ "G1", "a" }); };
    page->performSelector("reloadSpecifiers");
    EXPECT_EQ(sections(), "G1(a)");
    EXPECT_EQ(screen->lines, Strings { "reload" });
    EXPECT_NE(cellAt({ 0, 0 }), before);
}

TEST_F(ListPages, ReloadThatRaisesLeavesThePageAsItWas)
{
    open(rowsOf({ "a", "G1", "b" }));
    const auto cell = cellAt({ 1, 0 });
    page->build = []() -> Rows { throw std::out_of_range("no such row"); };
    EXPECT_THROW(page->reloadSpecifiers(), std::out_of_range);
    EXPECT_EQ(sections(), "-(a) G1(b)");
    EXPECT_EQ(cellAt({ 1, 0 }), cell);
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(ListPages, ReloadBeforeTheRowsWereBuiltBuildsThem)
{
    page->build = [this] { return rowsOf({ "a" }); };
    page->initForContentSize(size);
    page->reloadSpecifiers();
    EXPECT_EQ(sections(), "-(a)");
}

TEST_F(ListPages, ThatDoNotBuildRowsHaveNone)
{
    open();
    EXPECT_EQ(page->specifiers(), Rows {});
    EXPECT_EQ(sections(), "");
}

TEST_F(ListPages, LoadTheRowsOfAPageDefinitionWithTheTargetThatReadsAndWritesThem)
{
    phone.writePage("Page", plainItems({ "a", "b" }));
    open();
    const Rows rows = page->loadSpecifiersFromPlistName_target("Page", page);
    EXPECT_EQ(identifiersOf(rows), (Strings { "a", "b" }));
    EXPECT_EQ(rows[0]->target(), page);
    EXPECT_EQ(page->title(), "Page");
    EXPECT_EQ(page->loadSpecifiersFromPlistName_target("Page", nullptr), Rows {});
    EXPECT_EQ(page->loadSpecifiersFromPlistName_target("Missing", page), Rows {});
}

TEST_F(ListPages, KeepATitleThatTheyHave)
{
    phone.writePage("Page", plainItems({ "a" }));
    page->setTitle("Own");
    page->loadSpecifiersFromPlistName_target("Page", page);
    EXPECT_EQ(page->title(), "Own");
}

class RowValues : public ListPages {
protected:
    RowValues() { open({ row }); }

    Row rowWith(const Dictionary& properties) const
    {
        Row made = rowOf("row", PSCellType::Switch);
        for (const auto& [key, value] : properties)
            made->setProperty_forKey(value, key);
        return made;
    }
    Value stored() const { return phone.readPropertyList(domainPath); }

    const Row row = rowWith({ { "defaults", domain }, { "key", "Key" }, { "default", "fallback" } });
};

TEST_F(RowValues, AreReadFromTheFileOfTheDomain)
{
    phone.writePropertyList(domainPath, Dictionary { { "Key", "stored" } });
    EXPECT_EQ(page->readPreferenceValue(row), Value("stored"));
    EXPECT_EQ(page->performSelector("readPreferenceValue:", row), Value("stored"));
}

TEST_F(RowValues, AreTheDefaultWhereNothingIsStored)
{
    EXPECT_EQ(page->readPreferenceValue(row), Value("fallback"));
    phone.writePropertyList(domainPath, Dictionary { { "Other", "stored" } });
    EXPECT_EQ(page->readPreferenceValue(row), Value("fallback"));
    EXPECT_EQ(page->readPreferenceValue(rowWith({})), Value());
}

TEST_F(RowValues, AreTheDefaultWhereTheFileCannotBeRead)
{
    for (const char* content : { "", "bplist00", "<plist><array/></plist>" }) {
        phone.writeFile(domainPath, bytesOf(content));
        EXPECT_EQ(page->readPreferenceValue(row), Value("fallback")) << content;
    }
}

TEST_F(RowValues, OfARowWithoutDomainOrKeyAreTheDefault)
{
    phone.writePropertyList(domainPath, Dictionary { { "Key", "stored" } });
    for (const Dictionary& properties : { Dictionary { { "key", "Key" } }, { { "defaults", domain } },
             { { "defaults", 5 }, { "key", "Key" } }, { { "defaults", domain }, { "key", 5 } } }) {
        Dictionary more = properties;
        more.emplace("default", "fallback");
        EXPECT_EQ(page->readPreferenceValue(rowWith(more)), Value("fallback"));
    }
}

TEST_F(RowValues, OfNoRowAreNull)
{
    EXPECT_EQ(page->readPreferenceValue(nullptr), Value());
    EXPECT_EQ(page->performSelector("readPreferenceValue:", "row"), Value());
}

TEST_F(RowValues, AreStoredBesideTheOthersOfTheDomain)
{
    phone.writePropertyList(domainPath, Dictionary { { "Other", 1 }, { "Key", "old" } });
    page->setPreferenceValue_specifier("new", row);
    EXPECT_EQ(stored(), Value(Dictionary { { "Other", 1 }, { "Key", "new" } }));
    page->performSelector("setPreferenceValue:specifier:", 5, row);
    EXPECT_EQ(stored(), Value(Dictionary { { "Other", 1 }, { "Key", 5 } }));
}

TEST_F(RowValues, MakeTheFileOfANewDomain)
{
    page->setPreferenceValue_specifier(true, row);
    EXPECT_EQ(stored(), Value(Dictionary { { "Key", true } }));
}

TEST_F(RowValues, ThatAreNullRemoveTheKey)
{
    phone.writePropertyList(domainPath, Dictionary { { "Other", 1 }, { "Key", "old" } });
    page->setPreferenceValue_specifier(nullptr, row);
    EXPECT_EQ(stored(), Value(Dictionary { { "Other", 1 } }));
    page->setPreferenceValue_specifier(nullptr, row);
    EXPECT_EQ(stored(), Value(Dictionary { { "Other", 1 } }));
}

TEST_F(RowValues, AreStoredBeforeTheNotificationIsPosted)
{
    row->setProperty_forKey("changed", PSProperty::postNotification);
    Value seen;
    phone.notifications->onPost = [&](const std::string&) { seen = stored(); };
    page->setPreferenceValue_specifier(7, row);
    EXPECT_EQ(phone.notifications->names, Strings { "changed" });
    EXPECT_EQ(seen, Value(Dictionary { { "Key", 7 } }));
}

TEST_F(RowValues, PostNothingWithoutAName)
{
    page->setPreferenceValue_specifier(7, row);
    row->setProperty_forKey(5, PSProperty::postNotification);
    page->setPreferenceValue_specifier(7, row);
    EXPECT_EQ(phone.notifications->names, Strings {});
}

TEST_F(RowValues, OfARowWithoutDomainOrKeyAreNotStored)
{
    page->setPreferenceValue_specifier(1, nullptr);
    page->setPreferenceValue_specifier(1, rowWith({ { "key", "Key" } }));
    page->setPreferenceValue_specifier(1, rowWith({ { "defaults", domain } }));
    EXPECT_FALSE(phone.files->exists(domainPath));
}

TEST_F(RowValues, ThatNoPropertyListHoldsLeaveTheFileAsItWas)
{
    phone.writePropertyList(domainPath, Dictionary { { "Key", "old" } });
    page->setPreferenceValue_specifier(row, row);
    EXPECT_EQ(stored(), Value(Dictionary { { "Key", "old" } }));
}

TEST_F(RowValues, OfADomainThatLeadsUpwardsStayOnThePhone)
{
    const Row made = rowWith({ { "defaults", "../../../../../../../../hostile" }, { "key", "Key" } });
    page->setPreferenceValue_specifier(1, made);
    EXPECT_EQ(phone.readPropertyList("/hostile.plist"), Value(Dictionary { { "Key", 1 } }));
    EXPECT_FALSE(std::filesystem::exists(phone.hostPath("/") + "/../hostile.plist"));
    EXPECT_EQ(page->readPreferenceValue(made), Value(1));
}

TEST_F(RowValues, OfADomainThatIsNoFileNameAreTheDefaultOrStored)
{
    for (const std::string& hostile : { std::string(), std::string("."), std::string("/no/such/folder/a"),
             std::string("a\0b", 3), std::string(5000, 'a') }) {
        const Row made = rowWith({ { "defaults", hostile }, { "key", "Key" }, { "default", "fallback" } });
        page->setPreferenceValue_specifier("stored", made);
        const Value value = page->readPreferenceValue(made);
        EXPECT_TRUE(value == Value("stored") || value == Value("fallback")) << hostile.substr(0, 20);
    }
}

TEST_F(RowValues, WithoutServicesAreTheDefaultAndAreNotStored)
{
    row->setProperty_forKey("changed", PSProperty::postNotification);
    Phone::setCurrent({});
    page->setPreferenceValue_specifier(7, row);
    EXPECT_EQ(page->readPreferenceValue(row), Value("fallback"));
}

class TappedRows : public ListPages {
protected:
    /// A page with a row of that detail class, tapped.
    void tapRowWithDetail(const Class* detail)
    {
        open({ rowOf("row", PSCellType::Link, detail) });
        tap({ 0, 0 });
    }
};

TEST_F(TappedRows, PerformTheirAction)
{
    const Row row = rowOf("row", PSCellType::Button);
    row->setButtonAction("act:");
    open({ row });
    tap({ 0, 0 });
    EXPECT_EQ(page->calls, Strings { "act row" });
    EXPECT_EQ(page->table().indexPathForSelectedRow(), std::nullopt);
}

TEST_F(TappedRows, OpenThePageOfTheirDetailClass)
{
    tapRowWithDetail(&DetailPage::classObject());
    const auto detail = std::dynamic_pointer_cast<DetailPage>(navigation->topViewController());
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->parentController(), page);
    EXPECT_EQ(detail->specifier(), page->specifierAtIndex(0));
    EXPECT_EQ(detail->title(), "Name of row");
    EXPECT_EQ(detail->table().frame(), (CGRect { 0, 0, 375, 667 }));
    EXPECT_EQ(detail->navigationController(), navigation);
    EXPECT_EQ(screen->lines, Strings { "push DetailPage" });
    EXPECT_EQ(page->table().indexPathForSelectedRow(), std::nullopt);
}

TEST_F(TappedRows, PerformTheirActionRatherThanOpenAPage)
{
    const Row row = rowOf("row", PSCellType::Link, &DetailPage::classObject());
    row->setButtonAction("act:");
    open({ row });
    tap({ 0, 0 });
    EXPECT_EQ(page->calls, Strings { "act row" });
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(TappedRows, DoNothingWithoutADetailClassOrWithOneThatIsNoPage)
{
    for (const Class* detail : { static_cast<const Class*>(nullptr), &UIView::classObject(),
             &UIViewController::classObject(), &UnmadePage::classObject(), &NSObject::classObject() }) {
        page = std::make_shared<ListPage>();
        tapRowWithDetail(detail);
        EXPECT_EQ(screen->lines, Strings {});
        EXPECT_EQ(navigation->topViewController(), page);
    }
}

TEST_F(TappedRows, WhosePageRaisesWhileItLoadsLeaveThePageAsItWas)
{
    open({ rowOf("row", PSCellType::Link, &RaisingPage::classObject()) });
    EXPECT_THROW(tap({ 0, 0 }), std::out_of_range);
    EXPECT_EQ(navigation->topViewController(), page);
    EXPECT_EQ(screen->lines, Strings {});
    EXPECT_EQ(sections(), "-(row)");
}

TEST_F(TappedRows, OfAPageUnderNoBarOpenNothing)
{
    const Row row = rowOf("row", PSCellType::Link, &DetailPage::classObject());
    page->build = [&] { return Rows { row }; };
    page->initForContentSize(size);
    tap({ 0, 0 });
    EXPECT_EQ(navigation->topViewController(), nullptr);
}

TEST_F(TappedRows, WhoseActionTheirTargetDoesNotKnowDoNothing)
{
    const Row row = rowOf("row", PSCellType::Button, &DetailPage::classObject());
    row->setButtonAction("noSuchAction:");
    open({ row });
    tap({ 0, 0 });
    EXPECT_EQ(page->calls, Strings {});
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(TappedRows, HighlightWhereTheyOpenOrDoSomething)
{
    Rows rows;
    for (int type = 1; type <= 15; ++type)
        rows.push_back(rowOf("row", static_cast<PSCellType>(type)));
    open(rows);
    std::string highlights;
    for (std::size_t row = 0; row < rows.size(); ++row)
        highlights += page->tableView_shouldHighlightRowAtIndexPath(page->table(), { 0, row }) ? 'y' : 'n';
    EXPECT_EQ(highlights, "yynnnnnnnnnnynn");
}

TEST_F(ListPages, HaveACellOfTheClassAndStyleOfTheRow)
{
    const std::pair<PSCellType, std::pair<const Class*, UITableViewCellStyle>> kinds[] = {
        { PSCellType::Link, { &PSTableCell::classObject(), UITableViewCellStyle::Default } },
        { PSCellType::LinkList, { &PSTableCell::classObject(), UITableViewCellStyle::Value1 } },
        { PSCellType::TitleValue, { &PSTableCell::classObject(), UITableViewCellStyle::Value1 } },
        { PSCellType::StaticText, { &PSTableCell::classObject(), UITableViewCellStyle::Default } },
        { PSCellType::Switch, { &PSSwitchTableCell::classObject(), UITableViewCellStyle::Default } },
        { PSCellType::Slider, { &PSSliderTableCell::classObject(), UITableViewCellStyle::Default } },
        { PSCellType::Spinner, { &PSTableCell::classObject(), UITableViewCellStyle::Default } },
    };
    Rows rows;
    for (const auto& kind : kinds)
        rows.push_back(rowOf("row", kind.first));
    open(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto cell = cellAt({ 0, i });
        ASSERT_TRUE(cell);
        EXPECT_EQ(&cell->isa(), kinds[i].second.first) << i;
        EXPECT_EQ(cell->style(), kinds[i].second.second) << i;
        EXPECT_EQ(cell->reuseIdentifier(), kinds[i].second.first->name());
        EXPECT_EQ(cell->specifier(), rows[i]);
        EXPECT_EQ(cell->frame(), (CGRect { 0, 0, 375, 44 }));
    }
}

TEST_F(ListPages, HaveACellOfTheRowsOwnClassWhereItIsACell)
{
    const Row own = rowOf("own", PSCellType::Switch);
    own->setProperty_forKey(&PlainCell::classObject(), PSProperty::cellClass);
    open({ own });
    EXPECT_EQ(&cellAt({ 0, 0 })->isa(), &PlainCell::classObject());
}

TEST_F(ListPages, HaveACellOfTheTypeWhereTheRowsOwnClassIsNone)
{
    Rows rows;
    for (const Value& wrong : { Value(&UITableViewCell::classObject()), Value(&PSListController::classObject()),
             Value("PlainCell"), Value(5) }) {
        rows.push_back(rowOf("row", PSCellType::Switch));
        rows.back()->setProperty_forKey(wrong, PSProperty::cellClass);
    }
    open(rows);
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_EQ(&cellAt({ 0, i })->isa(), &PSSwitchTableCell::classObject());
}

TEST_F(ListPages, AreAsHighAsTheirCells)
{
    const Row tall = rowOf("tall", PSCellType::StaticText);
    tall->setName(std::string(100, 'x'));
    open({ rowOf("row"), tall });
    EXPECT_EQ(page->tableView_estimatedHeightForRowAtIndexPath(page->table(), { 0, 1 }), 44);
    EXPECT_EQ(page->tableView_heightForRowAtIndexPath(page->table(), { 0, 0 }), 44);
    EXPECT_EQ(page->tableView_heightForRowAtIndexPath(page->table(), { 0, 1 }), 85);
    EXPECT_EQ(page->tableView_heightForRowAtIndexPath(page->table(), { 0, 2 }), 44);
}

TEST_F(ListPages, MakeTheirCellsAnewWhenTheAppearanceChanges)
{
    open(rowsOf({ "a" }));
    const auto before = cellAt({ 0, 0 });
    page->traitCollectionDidChange();
    EXPECT_NE(cellAt({ 0, 0 }), before);
    EXPECT_EQ(page->calls, Strings {});
}

TEST_F(ListPages, SurviveAReloadWhileACellIsMade)
{
    page->build = [this] {
        return Rows { rowOf("switch", PSCellType::Switch), rowOf("value", PSCellType::TitleValue),
            rowOf("slider", PSCellType::Slider) };
    };
    open();
    for (const std::size_t row : { 0, 1, 2 }) {
        page->onRead = [this] { page->reloadSpecifiers(); };
        EXPECT_TRUE(cellAt({ 0, row }));
    }
    EXPECT_EQ(sections(), "-(switch value slider)");
}

TEST_F(ListPages, SurviveAControlWhoseSetterReloadsThePage)
{
    page->build = [this] {
        const Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Name", page, "reloadSpecifiers", "", nullptr, PSCellType::Switch, nullptr);
        row->setIdentifier("row");
        return Rows { row };
    };
    open();
    const std::weak_ptr<PSTableCell> cell = cellAt({ 0, 0 });
    const auto control = std::dynamic_pointer_cast<PSControlTableCell>(cell.lock())->control();
    control->sendActionsForControlEvents(UIControlEventValueChanged);
    EXPECT_TRUE(cell.expired());
    EXPECT_EQ(screen->lines, Strings { "reload" });
    control->sendActionsForControlEvents(UIControlEventValueChanged);
    EXPECT_EQ(screen->lines, Strings { "reload" });
    EXPECT_EQ(sections(), "-(row)");
}

TEST_F(ListPages, SurviveARowWhoseActionIsNotMeantForRows)
{
    for (const char* action :
        { "setPreferenceValue:specifier:", "readPreferenceValue:", "reloadSpecifiers", "", ":", "\n" }) {
        page = std::make_shared<ListPage>();
        const Row row = rowOf("row", PSCellType::Button);
        row->setButtonAction(action);
        open({ row });
        tap({ 0, 0 });
        EXPECT_EQ(sections(), "-(row)") << action;
    }
}

TEST_F(ListPages, ShowALabelOfAMillionCharacters)
{
    const Row row = rowOf("row", PSCellType::StaticText);
    row->setName(std::string(1000000, 'x'));
    open({ row });
    EXPECT_EQ(page->tableView_heightForRowAtIndexPath(page->table(), { 0, 0 }), 21 * 24782 + 22);
}

TEST_F(ListPages, ShowLabelsThatAreNoText)
{
    for (const std::string& label :
        { std::string("\xFF\xC3"), std::string("a\0b", 3), std::string("\n\n\n"), std::string("\x1B[31m") }) {
        page = std::make_shared<ListPage>();
        const Row row = rowOf(label, PSCellType::StaticText);
        row->setName(label);
        open({ row });
        EXPECT_EQ(cellAt({ 0, 0 })->title(), label);
        EXPECT_GE(page->tableView_heightForRowAtIndexPath(page->table(), { 0, 0 }), 44);
    }
}

TEST_F(ListPages, AreNotKeptByTheirRowsCellsAndPagesBelow)
{
    page->build = [this] { return rowsOf({ "a" }); };
    page->initForContentSize(size);
    const auto cell = cellAt({ 0, 0 });
    const auto below = std::make_shared<ListPage>();
    below->setParentController(page);
    const std::weak_ptr<ListPage> watched = page;
    page.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(below->parentController(), nullptr);
    EXPECT_EQ(cell->specifier()->performGetter(), Value());
}

TEST(ListPagesOfTheirOwn, AreGoneWhenTheBarIs)
{
    auto page = std::make_shared<ListPage>();
    page->build = [] { return Rows { PSSpecifier::emptyGroupSpecifier() }; };
    page->initForContentSize(size);
    auto navigation = std::make_shared<UINavigationController>();
    navigation->pushViewController_animated(page, false);
    const std::weak_ptr<ListPage> watched = page;
    page.reset();
    EXPECT_FALSE(watched.expired());
    navigation.reset();
    EXPECT_TRUE(watched.expired());
}

} // namespace
