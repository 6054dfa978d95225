#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDMessagesSettingsController.h"
#include "TDPageStyle.h"

#include <functional>

namespace {

constexpr const char* feature = "TandemEnabledMessages";
constexpr const char* imToText = "TandemEnabledIMToText";
constexpr const char* simChoice = "ShowSimSlectionForMessages";
constexpr const char* time = "TandemSimSelectionTimeForMessages";

Array messagesItems()
{
    const auto toggle = [](const char* key, const char* setter) {
        return item("PSSwitchCell", key, { { "key", key }, { "set", setter }, { "icon", "Sim" } });
    };
    return {
        item("PSGroupCell", "lead"),
        toggle(feature, "tandemEnabledOrDisabledForMessages:specifier:"),
        item("PSGroupCell", "imGroup"),
        toggle(imToText, "tandemEnabledOrDisabledForIMToText:specifier:"),
        item("PSSwitchCell", "ask"),
        item("PSGroupCell", "choice"),
        toggle(simChoice, "enableShowSimSelectionForMessages:specifier:"),
        item("PSSliderCell", time, { { "key", time }, { "cellClass", "TDSliderCell" }, { "min", 1 }, { "max", 10 } }),
        item("PSSwitchCell", "app", { { "bundleIdentifier", "app" } }),
        item("PSGroupCell", "CopyRightHeader"),
    };
}

class MessagesPage : public PageTest {
protected:
    MessagesPage()
    {
        phone.writePage("Root", {});
        phone.writePage("Messages", messagesItems());
        phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "Sim.png"), phone.png(29, 29));
    }

    void openMessages(bool on, bool im, bool offered)
    {
        phone.storeSettings({ { feature, on }, { imToText, im }, { simChoice, offered } });
        openRoot();
        page = open<TDMessagesSettingsController>();
    }
    Strings rows() { return identifiersOf(page->specifiers()); }

    static Strings rowsShown(bool on, bool im, bool offered)
    {
        Strings rows { "lead", feature };
        if (on) {
            rows.insert(rows.end(), { "imGroup", imToText });
            if (im)
                rows.emplace_back("ask");
            rows.insert(rows.end(), { "choice", simChoice });
            if (offered)
                rows.emplace_back(time);
            rows.emplace_back("app");
        }
        rows.emplace_back("CopyRightHeader");
        return rows;
    }

    std::shared_ptr<TDMessagesSettingsController> page;
};

TEST_F(MessagesPage, FeatureOffShowsTheTwoLeadingRowsAndTheFooter)
{
    openMessages(false, true, true);
    EXPECT_EQ(rows(), (Strings { "lead", feature, "CopyRightHeader" }));
}

/// The five lines of the table of rows shown, from a cold start and after switching there and back.
TEST_F(MessagesPage, RowsShownFollowTheThreeStoredFlags)
{
    for (int flags = 0; flags < 8; ++flags) {
        const bool on = flags & 1;
        const bool im = flags & 2;
        const bool offered = flags & 4;
        SCOPED_TRACE(testing::Message() << on << im << offered);
        openMessages(on, im, offered);
        EXPECT_EQ(rows(), rowsShown(on, im, offered));
        moveSwitch(*page, feature, !on);
        EXPECT_EQ(rows(), rowsShown(!on, im, offered));
        moveSwitch(*page, feature, on);
        EXPECT_EQ(rows(), rowsShown(on, im, offered));
        if (!on)
            continue;
        moveSwitch(*page, imToText, !im);
        EXPECT_EQ(rows(), rowsShown(on, !im, offered));
        moveSwitch(*page, imToText, im);
        moveSwitch(*page, simChoice, !offered);
        EXPECT_EQ(rows(), rowsShown(on, im, !offered));
        moveSwitch(*page, simChoice, offered);
        EXPECT_EQ(rows(), rowsShown(on, im, offered));
    }
}

TEST_F(MessagesPage, TurningTheFeatureOnAnimatesExactlyThreeRowsAndReloads)
{
    openMessages(false, true, true);
    moveSwitch(*page, feature, true);
    EXPECT_EQ(screen->lines,
        (Strings { "insert 2 imGroup animated", "insert 3 TandemEnabledIMToText animated", "insert 4 ask animated",
            "reload" }));
    EXPECT_EQ(rows(), rowsShown(true, true, true));
}

TEST_F(MessagesPage, TurningTheFeatureOffRemovesTheThreeFromTheLastToTheFirst)
{
    openMessages(true, true, true);
    moveSwitch(*page, feature, false);
    EXPECT_EQ(screen->lines,
        (Strings { "remove 4 ask animated", "remove 3 TandemEnabledIMToText animated", "remove 2 imGroup animated",
            "reload" }));
    EXPECT_EQ(rows(), rowsShown(false, true, true));
}

TEST_F(MessagesPage, TurningTheFeatureOffTwiceFindsNothingToRemove)
{
    openMessages(false, true, true);
    moveSwitch(*page, feature, false);
    EXPECT_EQ(screen->lines, Strings { "reload" });
}

TEST_F(MessagesPage, InstantMessagesOffKeepTheirSwitchAndHideOnlyTheNextRow)
{
    openMessages(true, true, true);
    moveSwitch(*page, imToText, false);
    EXPECT_EQ(screen->lines, (Strings { "remove 4 ask animated", "reload" }));
    EXPECT_EQ(rows(), rowsShown(true, false, true));
    moveSwitch(*page, imToText, true);
    EXPECT_EQ(screen->lines.at(2), "insert 4 ask animated");
    EXPECT_EQ(rows(), rowsShown(true, true, true));
}

TEST_F(MessagesPage, TurningTheSimChoiceOffRemovesTheSlider)
{
    openMessages(true, true, true);
    moveSwitch(*page, simChoice, false);
    EXPECT_EQ(screen->lines, (Strings { "remove 7 TandemSimSelectionTimeForMessages animated", "reload" }));
    moveSwitch(*page, simChoice, true);
    EXPECT_EQ(screen->lines.at(2), "insert 7 TandemSimSelectionTimeForMessages animated");
}

TEST_F(MessagesPage, SimChoiceIconKeepsTheAccentColourOnDark)
{
    openMessages(true, true, true);
    phone.appearance->becomeDark();
    page->traitCollectionDidChange();
    EXPECT_EQ(cellOf(*page, simChoice)->imageView()->tintColor(), accentColor);
    EXPECT_EQ(cellOf(*page, simChoice)->imageView()->image()->renderingMode(), UIImageRenderingMode::AlwaysTemplate);
    EXPECT_EQ(cellOf(*page, simChoice)->textLabel()->textColor(), UIColor::whiteColor());
}

TEST_F(MessagesPage, FeatureOffDoesNothingToNoRowsAndRaisesTheRangeErrorForOne)
{
    phone.storeSettings({ { feature, false } });
    const auto messages = std::make_shared<TDMessagesSettingsController>();
    Rows none;
    EXPECT_EQ(messages->hideORShowMessagesSpecifiers(none).size(), 0U);
    Rows one(1, PSSpecifier::emptyGroupSpecifier());
    EXPECT_THROW(messages->hideORShowMessagesSpecifiers(one), std::out_of_range);
    for (const std::size_t count : { 2U, 3U }) {
        Rows rows(count, PSSpecifier::emptyGroupSpecifier());
        EXPECT_EQ(messages->hideORShowMessagesSpecifiers(rows).size(), count);
    }
}

TEST_F(MessagesPage, PageOfNoneOneAndTwoRowsOpensWhileTheFeatureIsOn)
{
    phone.storeSettings({});
    for (const Strings& identifiers : { Strings {}, Strings { "a" }, Strings { "a", "b" } }) {
        phone.writePage("Messages", plainItems(identifiers));
        page = open<TDMessagesSettingsController>();
        EXPECT_EQ(rows(), identifiers);
    }
}

TEST_F(MessagesPage, SwitchesBeforeTheRowsAreBuiltStoreAndReload)
{
    using Page = TDMessagesSettingsController;
    const auto expectReloadAlone = [&](auto setter, const std::string& key) {
        const Row row = PSSpecifier::emptyGroupSpecifier();
        row->setProperty_forKey(key, PSProperty::key);
        for (const bool on : { false, true }) {
            phone.storeSettings({ { feature, true }, { imToText, true }, { simChoice, true } });
            openRoot();
            page = makeUnshown<Page>();
            std::invoke(setter, *page, on, row);
            EXPECT_EQ(screen->lines, Strings { "reload" }) << key << on;
            EXPECT_EQ(rows(), rowsShown(on || key != feature, on || key != imToText, on || key != simChoice));
        }
    };
    expectReloadAlone(&Page::tandemEnabledOrDisabledForMessages_specifier, feature);
    expectReloadAlone(&Page::tandemEnabledOrDisabledForIMToText_specifier, imToText);
    expectReloadAlone(&Page::enableShowSimSelectionForMessages_specifier, simChoice);
}

TEST_F(MessagesPage, IconsAreNotAskedForRowsThatAreHiddenOrOnlyInserted)
{
    Array items = messagesItems();
    items[4] = item("PSLinkCell", "ask", { { "bundleIdentifier", "ask" } });
    phone.writePage("Messages", items);
    openMessages(false, true, true);
    EXPECT_EQ(phone.homeScreen->requests.size(), 0U);
    moveSwitch(*page, feature, true);
    EXPECT_EQ(screen->lines.size(), 4U);
    EXPECT_EQ(phone.homeScreen->requests.size(), 2U);
    moveSwitch(*page, imToText, true);
    EXPECT_EQ(phone.homeScreen->requests.size(), 4U);
}

TEST_F(MessagesPage, FirstRowCountsAsMissing)
{
    phone.storeSettings({ { simChoice, false } });
    for (const char* first : { imToText, time }) {
        const Strings identifiers { first, "x", "CopyRightHeader" };
        phone.writePage("Messages", plainItems(identifiers));
        page = open<TDMessagesSettingsController>();
        EXPECT_EQ(rows(), identifiers);
    }
}

TEST_F(MessagesPage, MissingSwitchesMoveNothing)
{
    phone.writePage("Messages",
        Array { item("PSGroupCell", "lead"), item("PSGroupCell", "x"), item("PSGroupCell", "CopyRightHeader") });
    openMessages(true, true, true);
    const Row row = PSSpecifier::emptyGroupSpecifier();
    for (const bool on : { false, true }) {
        page->tandemEnabledOrDisabledForMessages_specifier(on, row);
        page->tandemEnabledOrDisabledForIMToText_specifier(on, row);
        page->enableShowSimSelectionForMessages_specifier(on, row);
    }
    EXPECT_EQ(screen->lines, Strings(6, "reload"));
}

TEST_F(MessagesPage, OnlyExactlyTheSliderCellGetsTheSeventyPointEstimate)
{
    openMessages(true, true, true);
    EXPECT_EQ(page->tableView_estimatedHeightForRowAtIndexPath(page->table(), *page->indexPathForIndex(7)), 70);
    EXPECT_EQ(page->tableView_estimatedHeightForRowAtIndexPath(page->table(), *page->indexPathForIndex(6)), 44);
}

} // namespace
