#include "Support/PageTest.h"
#include "TDCallsSettingsController.h"
#include "TDMessagesSettingsController.h"

namespace {

constexpr const char* simChoice = "ShowSimSlectionForCalls";
constexpr const char* imToText = "TandemEnabledIMToText";
constexpr const char* feature = "TandemEnabledMessages";

Value toggle(const char* key, const char* setter)
{
    return item("PSSwitchCell", key, { { "key", key }, { "default", true }, { "set", setter } });
}

/// Page definitions against the rules, so that a switch reaches beyond the list.
class RangeError : public PageTest {
protected:
    RangeError() { phone.writePage("Root", {}); }

    /// The text of the error that the switch raises; the page's rows are the same ones after it as before.
    static std::string errorAfterMoving(PSListController& page, const std::string& identifier, bool on)
    {
        const Rows before = page.specifiers();
        try {
            moveSwitch(page, identifier, on);
        } catch (const std::out_of_range& error) {
            EXPECT_EQ(page.specifiers(), before);
            EXPECT_EQ(page.table().loadCellForRowAtIndexPath({ 0, before.size() }), nullptr);
            return error.what();
        }
        return "none";
    }
};

TEST_F(RangeError, InTheMiddleOfAnInsertionTakesBackTheRowsThatWereInserted)
{
    phone.writePage("Messages",
        Array { toggle(feature, "tandemEnabledOrDisabledForMessages:specifier:"), item("PSSwitchCell", "lead"),
            item("PSSwitchCell", "before"), toggle(imToText, "tandemEnabledOrDisabledForIMToText:specifier:") });
    phone.storeSettings({ { imToText, true } });
    const auto page = open<TDMessagesSettingsController>();
    EXPECT_EQ(errorAfterMoving(*page, feature, true), "objectAtIndex: index 4 beyond bounds of a list of 4 rows");
    EXPECT_EQ(
        screen->lines, (Strings { "insert 2 before animated", "insert 3 TandemEnabledIMToText animated", "reload" }));
}

TEST_F(RangeError, InTheMiddleOfARemovalPutsBackTheRowsThatWereRemoved)
{
    phone.writePage("Messages",
        Array { toggle(feature, "tandemEnabledOrDisabledForMessages:specifier:"), item("PSSwitchCell", "lead"),
            item("PSSwitchCell", "before"), toggle(imToText, "tandemEnabledOrDisabledForIMToText:specifier:"),
            item("PSSwitchCell", "after") });
    phone.storeSettings({ { imToText, true } });
    const auto page = open<TDMessagesSettingsController>();
    phone.writePage("Messages", Array { toggle(feature, "tandemEnabledOrDisabledForMessages:specifier:") });
    EXPECT_EQ(errorAfterMoving(*page, feature, false),
        "removeObjectAtIndex: index 18446744073709551615 beyond bounds of a list of 1 rows");
    EXPECT_EQ(screen->lines,
        (Strings { "remove 4 after animated", "remove 3 TandemEnabledIMToText animated", "remove 2 before animated",
            "reload" }));
}

TEST_F(RangeError, BeforeAnythingHasMovedLeavesTheScreenAlone)
{
    phone.writePage(
        "Calls", Array { item("PSSwitchCell", "lead"), toggle(simChoice, "enableShowSimSelection:specifier:") });
    const auto page = open<TDCallsSettingsController>();
    EXPECT_EQ(errorAfterMoving(*page, simChoice, true), "objectAtIndex: index 2 beyond bounds of a list of 2 rows");
    EXPECT_EQ(errorAfterMoving(*page, simChoice, false),
        "removeSpecifierAtIndex:animated: index 2 beyond bounds of a list of 2 rows");
    EXPECT_EQ(screen->lines, Strings {});
}

TEST_F(RangeError, OfADefinitionThatHasBecomeEmptyIsTheListsOwn)
{
    constexpr const char* calls = "TandemEnabledCalls";
    phone.writePage("Calls",
        Array { toggle(calls, "enableTandemForCalls:specifier:"), item("PSSwitchCell", "row"),
            item("PSGroupCell", "CopyRightHeader") });
    const auto page = open<TDCallsSettingsController>();
    phone.writePage("Calls", Array {});
    EXPECT_EQ(errorAfterMoving(*page, calls, true), "objectAtIndex: index 0 beyond bounds of a list of 0 rows");
}

} // namespace
