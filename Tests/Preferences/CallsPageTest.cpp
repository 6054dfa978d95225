#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDCallsSettingsController.h"
#include "TDPageStyle.h"
#include "TDSliderCell.h"
#include "libtandem/TDSettings.h"

#include <functional>

namespace {

class SubclassOfSliderCell final : public TDSliderCell {
    NS_CLASS(SubclassOfSliderCell, TDSliderCell)
};

NS_IMPLEMENTATION(SubclassOfSliderCell)

constexpr const char* feature = "TandemEnabledCalls";
constexpr const char* simChoice = "ShowSimSlectionForCalls";
constexpr const char* time = "TandemSimSelectionTimeForCalls";

Array callsItems(int apps)
{
    Array items {
        item("PSSwitchCell", feature,
            { { "key", feature }, { "default", true }, { "set", "enableTandemForCalls:specifier:" } }),
        item("PSGroupCell", "choice"),
        item("PSSwitchCell", simChoice,
            { { "key", simChoice }, { "default", true }, { "set", "enableShowSimSelection:specifier:" },
                { "icon", "Sim" } }),
        item("PSSliderCell", time,
            { { "key", time }, { "default", 3 }, { "cellClass", "TDSliderCell" }, { "min", 1 }, { "max", 10 } }),
    };
    for (int i = 0; i < apps; ++i)
        items.push_back(
            item("PSSwitchCell", "app" + std::to_string(i), { { "bundleIdentifier", "app" + std::to_string(i) } }));
    items.push_back(item("PSGroupCell", "CopyRightHeader"));
    return items;
}

class CallsPage : public PageTest {
protected:
    CallsPage()
    {
        phone.writePage("Root", {});
        phone.writePage("Calls", callsItems(2));
        phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "Sim.png"), phone.png(29, 29));
    }

    std::shared_ptr<TDCallsSettingsController> openCalls() { return page = open<TDCallsSettingsController>(); }
    Strings rows() { return identifiersOf(page->specifiers()); }

    const Strings allRows { feature, "choice", simChoice, time, "app0", "app1", "CopyRightHeader" };
    const Strings rowsWithoutTime { feature, "choice", simChoice, "app0", "app1", "CopyRightHeader" };
    const Strings collapsedRows { feature, "CopyRightHeader" };
    std::shared_ptr<TDCallsSettingsController> page;
};

TEST_F(CallsPage, FeatureOffShowsExactlyTheFeatureSwitchAndTheFooter)
{
    phone.storeSettings({ { feature, false } });
    openCalls();
    EXPECT_EQ(rows(), collapsedRows);
}

/// The three lines of the table of rows shown, from a cold start and after switching there and back.
TEST_F(CallsPage, RowsShownFollowTheTwoStoredFlags)
{
    for (const bool on : { false, true }) {
        for (const bool offered : { false, true }) {
            SCOPED_TRACE(testing::Message() << on << offered);
            const Strings& expected = !on ? collapsedRows : offered ? allRows : rowsWithoutTime;
            phone.storeSettings({ { feature, on }, { simChoice, offered } });
            openRoot();
            openCalls();
            EXPECT_EQ(rows(), expected);
            moveSwitch(*page, feature, !on);
            EXPECT_EQ(rows(), on ? collapsedRows : offered ? allRows : rowsWithoutTime);
            moveSwitch(*page, feature, on);
            EXPECT_EQ(rows(), expected);
            if (!on)
                continue;
            moveSwitch(*page, simChoice, !offered);
            EXPECT_EQ(rows(), offered ? rowsWithoutTime : allRows);
            moveSwitch(*page, simChoice, offered);
            EXPECT_EQ(rows(), expected);
        }
    }
}

TEST_F(CallsPage, TurningTheFeatureOffRemovesEverySecondRowThenReloadsToTwo)
{
    for (int apps = 0; apps <= 9; ++apps) {
        SCOPED_TRACE(apps);
        phone.writePage("Calls", callsItems(apps));
        phone.storeSettings({});
        openRoot();
        openCalls();
        Strings left = rows();
        Strings expected;
        for (std::size_t i = 1; i < left.size() - 1; ++i) {
            expected.push_back("remove " + std::to_string(i) + " " + left[i] + " animated");
            left.erase(left.begin() + static_cast<std::ptrdiff_t>(i));
        }
        expected.emplace_back("reload");
        moveSwitch(*page, feature, false);
        EXPECT_EQ(screen->lines, expected);
        EXPECT_EQ(rows(), collapsedRows);
    }
}

TEST_F(CallsPage, TurningTheFeatureOffRemovesWhatWasAtOneThreeAndFive)
{
    openCalls();
    moveSwitch(*page, feature, false);
    EXPECT_EQ(screen->lines,
        (Strings { "remove 1 choice animated", "remove 2 TandemSimSelectionTimeForCalls animated",
            "remove 3 app1 animated", "reload" }));
}

TEST_F(CallsPage, TurningTheFeatureOnInsertsEverythingBetweenSwitchAndFooterThenReloads)
{
    phone.storeSettings({ { feature, false }, { simChoice, false } });
    openCalls();
    moveSwitch(*page, feature, true);
    EXPECT_EQ(screen->lines,
        (Strings { "insert 1 choice animated", "insert 2 ShowSimSlectionForCalls animated",
            "insert 3 TandemSimSelectionTimeForCalls animated", "insert 4 app0 animated", "insert 5 app1 animated",
            "reload" }));
    EXPECT_EQ(rows(), rowsWithoutTime);
}

TEST_F(CallsPage, TurningTheSimChoiceOffRemovesExactlyTheRowAfterItAndItStaysAway)
{
    openCalls();
    moveSwitch(*page, simChoice, false);
    EXPECT_EQ(screen->lines, (Strings { "remove 3 TandemSimSelectionTimeForCalls animated", "reload" }));
    EXPECT_EQ(rows(), rowsWithoutTime);
    page->reloadSpecifiers();
    EXPECT_EQ(rows(), rowsWithoutTime);
    moveSwitch(*page, simChoice, true);
    EXPECT_EQ(screen->lines.at(3), "insert 3 TandemSimSelectionTimeForCalls animated");
    EXPECT_EQ(rows(), allRows);
}

TEST_F(CallsPage, DarkModeTurnsTheSimChoiceIconAndEnabledTextsWhite)
{
    Array items = callsItems(0);
    items.push_back(item("PSSwitchCell", "disabled", { { "enabled", false } }));
    phone.writePage("Calls", items);
    openCalls();
    const UIColor disabled { 2.0F / 3, 2.0F / 3, 2.0F / 3, 0.5F };
    EXPECT_EQ(cellOf(*page, simChoice)->imageView()->tintColor(), accentColor);
    EXPECT_EQ(cellOf(*page, simChoice)->imageView()->image()->renderingMode(), UIImageRenderingMode::AlwaysTemplate);
    EXPECT_EQ(cellOf(*page, feature)->textLabel()->textColor(), accentColor);
    EXPECT_EQ(cellOf(*page, "disabled")->textLabel()->textColor(), disabled);
    phone.appearance->becomeDark();
    page->traitCollectionDidChange();
    EXPECT_EQ(cellOf(*page, simChoice)->imageView()->tintColor(), UIColor::whiteColor());
    EXPECT_EQ(cellOf(*page, feature)->textLabel()->textColor(), UIColor::whiteColor());
    EXPECT_EQ(cellOf(*page, "disabled")->textLabel()->textColor(), disabled);
}

TEST_F(CallsPage, OnlyExactlyTheSliderCellGetsTheSeventyPointEstimate)
{
    Array items = callsItems(0);
    items.push_back(item("PSSliderCell", "subclass", { { "cellClass", "SubclassOfSliderCell" } }));
    phone.writePage("Calls", items);
    openCalls();
    const auto estimate = [&](std::size_t index) {
        return page->tableView_estimatedHeightForRowAtIndexPath(page->table(), *page->indexPathForIndex(index));
    };
    EXPECT_EQ(estimate(0), 44);
    EXPECT_EQ(estimate(3), 70);
    EXPECT_EQ(estimate(5), 44);
}

TEST_F(CallsPage, OneChangeWritesTheFilePostsAndThenTellsTheCoreLibrary)
{
    Array items = callsItems(0);
    items[2] = item("PSSwitchCell", simChoice,
        { { "key", simChoice }, { "set", "enableShowSimSelection:specifier:" }, { "PostNotification", "changed" } });
    phone.writePage("Calls", items);
    phone.storeSettings({ { simChoice, false } });
    openCalls();
    bool libraryKnewAtPost = true;
    phone.notifications->onPost = [&](const std::string&) {
        libraryKnewAtPost = TDSettings::sharedSettings()->isDefaultActionForCalls();
        EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { simChoice, true } }));
    };
    moveSwitch(*page, simChoice, true);
    EXPECT_EQ(phone.notifications->names, Strings { "changed" });
    EXPECT_FALSE(libraryKnewAtPost);
    EXPECT_TRUE(TDSettings::sharedSettings()->isDefaultActionForCalls());
}

TEST_F(CallsPage, IconsAreAskedForAgainAtEveryBuildOfTheRows)
{
    openCalls();
    EXPECT_EQ(phone.homeScreen->requests.size(), 2U);
    moveSwitch(*page, simChoice, false);
    EXPECT_EQ(phone.homeScreen->requests.size(), 4U);
}

TEST_F(CallsPage, IconsAreNotAskedForRowsThatAreHiddenOrOnlyInserted)
{
    Array items = callsItems(2);
    items[3] = item("PSLinkCell", "app", { { "bundleIdentifier", "app" } });
    phone.writePage("Calls", items);
    phone.storeSettings({ { feature, false } });
    openCalls();
    EXPECT_EQ(phone.homeScreen->requests.size(), 0U);
    moveSwitch(*page, feature, true);
    EXPECT_EQ(screen->lines.size(), 6U);
    EXPECT_EQ(phone.homeScreen->requests.size(), 3U);
    moveSwitch(*page, simChoice, true);
    EXPECT_EQ(phone.homeScreen->requests.size(), 6U);
}

TEST_F(CallsPage, SimChoiceAsTheFirstRowMovesNothing)
{
    phone.writePage("Calls",
        Array {
            item("PSSwitchCell", simChoice, { { "key", simChoice }, { "set", "enableShowSimSelection:specifier:" } }),
            item("PSSliderCell", time), item("PSGroupCell", "CopyRightHeader") });
    openCalls();
    moveSwitch(*page, simChoice, false);
    moveSwitch(*page, simChoice, true);
    EXPECT_EQ(screen->lines, (Strings { "reload", "reload" }));
}

TEST_F(CallsPage, SelectionTimeAsTheFirstRowIsNotHidden)
{
    phone.writePage("Calls", Array { item("PSSliderCell", time), item("PSGroupCell", "CopyRightHeader") });
    phone.storeSettings({ { simChoice, false } });
    openCalls();
    EXPECT_EQ(rows(), (Strings { time, "CopyRightHeader" }));
}

TEST_F(CallsPage, SwitchesBeforeTheRowsAreBuiltStoreAndReload)
{
    const auto expectReloadAlone = [&](auto setter, const std::string& key, const Strings& expectedOff) {
        const Row row = PSSpecifier::emptyGroupSpecifier();
        row->setProperty_forKey(key, PSProperty::key);
        for (const bool on : { false, true }) {
            page = makeUnshown<TDCallsSettingsController>();
            std::invoke(setter, *page, on, row);
            EXPECT_EQ(screen->lines, Strings { "reload" }) << key << on;
            EXPECT_EQ(rows(), on ? allRows : expectedOff) << key << on;
        }
    };
    expectReloadAlone(&TDCallsSettingsController::enableTandemForCalls_specifier, feature, collapsedRows);
    expectReloadAlone(&TDCallsSettingsController::enableShowSimSelection_specifier, simChoice, rowsWithoutTime);
}

TEST_F(CallsPage, RowsBehindTheFeatureSwitchComeAndGoWhereverItStands)
{
    Array items = callsItems(1);
    items.insert(items.begin(), item("PSGroupCell", "lead"));
    phone.writePage("Calls", items);
    openCalls();
    moveSwitch(*page, feature, true);
    EXPECT_EQ(screen->lines,
        (Strings { "insert 2 choice animated", "insert 3 ShowSimSlectionForCalls animated",
            "insert 4 TandemSimSelectionTimeForCalls animated", "insert 5 app0 animated", "reload" }));
    screen->lines.clear();
    moveSwitch(*page, feature, false);
    EXPECT_EQ(screen->lines,
        (Strings { "remove 2 choice animated", "remove 3 TandemSimSelectionTimeForCalls animated", "reload" }));
}

TEST_F(CallsPage, FeatureOffWithFewerThanTwoRowsRaisesTheRangeError)
{
    phone.storeSettings({ { feature, false } });
    const auto calls = std::make_shared<TDCallsSettingsController>();
    for (const std::size_t count : { 0U, 1U }) {
        Rows rows(count, PSSpecifier::emptyGroupSpecifier());
        EXPECT_THROW(calls->hideORShowCallsSpecifiers(rows), std::out_of_range) << count;
        EXPECT_EQ(rows.size(), count);
    }
    Rows two(2, PSSpecifier::emptyGroupSpecifier());
    EXPECT_EQ(calls->hideORShowCallsSpecifiers(two).size(), 2U);
}

TEST_F(CallsPage, RangeErrorWhileThePageOpensLeavesItUnopened)
{
    phone.writePage("Calls", plainItems({ "only" }));
    phone.storeSettings({ { feature, false } });
    openRoot();
    EXPECT_THROW(open<TDCallsSettingsController>(), std::out_of_range);
    EXPECT_EQ(navigation->topViewController(), root);
}

TEST_F(CallsPage, RangeErrorWhileThePageReloadsLeavesItsRows)
{
    openCalls();
    phone.writePage("Calls", plainItems({ "only" }));
    phone.storeSettings({ { feature, false } });
    EXPECT_THROW(page->reloadSpecifiers(), std::out_of_range);
    EXPECT_EQ(rows(), allRows);
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(CallsPage, PageDefinitionThatIsMissingOrNoneOpensEmpty)
{
    for (const Value& definition : std::vector<Value> { "text", Array {}, Dictionary(), Dictionary { { "items", 5 } },
             Dictionary { { "items", Array { 1, "x", Value(Array {}) } } } }) {
        phone.writePropertyList(stringByAppendingPathComponent(TestPhone::bundlePath, "Calls.plist"), definition);
        openCalls();
        EXPECT_EQ(rows(), Strings {});
    }
}

/// A row that has every key, with one of them changed.
class RowOfWrongTypes : public CallsPage {
protected:
    /// How the row is shown, what a tap on it does, and what moving its slider to 7 stores and posts. A null value
    /// takes the key away.
    Dictionary outcomeOf(const std::string& key, const Value& value)
    {
        Dictionary row { { "cell", "PSSliderCell" }, { "cellClass", "TDSliderCell" }, { "label", "Label" },
            { "id", "row" }, { "key", "Key" }, { "default", 3 }, { "defaults", "com.vexil.tandem" },
            { "set", "setPreferenceValue:specifier:" }, { "get", "readPreferenceValue:" }, { "action", "none" },
            { "detail", "none" }, { "icon", "Sim" }, { "min", 1 }, { "max", 9 }, { "showValue", true },
            { "isSegmented", true }, { "segmentCount", 8 }, { "isContinuous", false }, { "footerText", "Footer" },
            { "negate", false }, { "PostNotification", "changed" }, { "enabled", true } };
        row.insert_or_assign(key, value);
        if (value.isNull())
            row.erase(key);
        phone.writePage("Calls", Array { row, item("PSGroupCell", "end") });
        phone.storeSettings({});
        phone.notifications->names.clear();
        openRoot();
        openCalls();
        return outcomeOfFirstRow();
    }

private:
    Dictionary outcomeOfFirstRow()
    {
        const auto cell =
            std::dynamic_pointer_cast<PSSliderTableCell>(page->table().loadCellForRowAtIndexPath({ 0, 0 }));
        const auto slider = cell ? std::dynamic_pointer_cast<PSSegmentableSlider>(cell->control()) : nullptr;
        if (!slider)
            return {};
        cell->layoutIfNeeded();
        Dictionary outcome { { "class", cell->isa().name() }, { "identifiers", texts(rows()) },
            { "title", cell->textLabel()->text() }, { "hasIcon", cell->imageView()->image() != nullptr },
            { "enabled", cell->isUserInteractionEnabled() }, { "value", double { slider->value() } },
            { "minimum", double { slider->minimumValue() } }, { "maximum", double { slider->maximumValue() } },
            { "segments", slider->segmentCount() }, { "showsValue", slider->showsValue() },
            { "continuous", slider->isContinuous() } };
        page->tableView_didSelectRowAtIndexPath(page->table(), { 0, 0 });
        outcome.emplace("screen", texts(screen->lines));
        slider->setValue(7);
        slider->release();
        outcome.emplace("stored", phone.storedSettings());
        outcome.emplace("posted", texts(phone.notifications->names));
        return outcome;
    }

    static Value texts(const Strings& strings) { return Array(strings.begin(), strings.end()); }
};

TEST_F(RowOfWrongTypes, RightTypesFirst)
{
    EXPECT_EQ(outcomeOf("label", "Label"),
        (Dictionary { { "class", "TDSliderCell" }, { "identifiers", Array { "row", "end" } }, { "title", "Label" },
            { "hasIcon", true }, { "enabled", true }, { "value", 3.0 }, { "minimum", 1.0 }, { "maximum", 9.0 },
            { "segments", 8 }, { "showsValue", true }, { "continuous", false }, { "screen", Array {} },
            { "stored", Dictionary { { "Key", 7.0 } } }, { "posted", Array { "changed" } } }));
}

TEST_F(RowOfWrongTypes, CountAsWhatTheyReadAsAndOtherwiseAsAbsent)
{
    using Reading = Value (*)(const Value&);
    const Reading text = [](const Value& value) { return value.string() ? value : Value(); };
    const Reading number = [](const Value& value) { return Value(value.doubleValue()); };
    const Reading boolean = [](const Value& value) { return Value(value.boolValue()); };
    const std::vector<std::pair<Reading, Strings>> keys {
        { text,
            { "cell", "cellClass", "label", "id", "key", "defaults", "set", "get", "action", "detail", "icon",
                "footerText", "PostNotification" } },
        { number, { "default", "min", "max", "segmentCount" } },
        { boolean, { "showValue", "isSegmented", "isContinuous", "negate", "enabled" } },
    };
    const std::vector<Value> wrong { 5, -1.5, true, false, "text", "2", Bytes { 1 }, Date { 1 }, Array { 1 },
        Dictionary { { "x", 1 } }, Uid { 1 } };
    for (const auto& [reading, keysOfType] : keys) {
        for (const std::string& key : keysOfType) {
            for (const Value& value : wrong)
                EXPECT_EQ(outcomeOf(key, value), outcomeOf(key, reading(value))) << key << " " << descriptionOf(value);
        }
    }
}

TEST_F(RowOfWrongTypes, AppOfAnyTypeIsAskedForAndShownWithoutAnIcon)
{
    for (const Value& app : std::vector<Value> { 5, true, Bytes { 1 }, Array { 1 }, Dictionary { { "x", 1 } } }) {
        phone.homeScreen->requests.clear();
        EXPECT_EQ(outcomeOf("bundleIdentifier", app), outcomeOf("bundleIdentifier", nullptr));
        EXPECT_EQ(phone.homeScreen->requests,
            (std::vector { FakeHomeScreen::Request {
                "com.vexil.tandem", "com.vexil.tandem.app.icon", Dictionary { { "TDServiceMessageData", app } } } }));
    }
}

} // namespace
