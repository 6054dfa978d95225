#include "PreferencesUI/PSSpecifier.h"
#include "Support/Fakes.h"

#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

using Strings = std::vector<std::string>;

/// Reads and writes the values of rows, and writes down what it is asked.
class RowTarget final : public NSObject {
    NS_CLASS(RowTarget, NSObject)
public:
    Value read(const Row& row)
    {
        calls.push_back("read " + nameOf(row));
        return 42;
    }
    void write_row(const Value& value, const Row& row)
    {
        calls.push_back("write " + std::to_string(value.integerValue()) + " " + nameOf(row));
        if (onWrite)
            onWrite();
    }
    void act(const Row& row) { calls.push_back("act " + nameOf(row)); }

    Strings calls;
    std::function<void()> onWrite;

private:
    static std::string nameOf(const Row& row) { return row ? row->identifier().value_or("-") : "nothing"; }
};

NS_IMPLEMENTATION(RowTarget, NS_METHOD(read), NS_METHOD(write_row), NS_METHOD(act))

class Specifiers : public ::testing::Test {
protected:
    Row rowOf(const std::string& setter, const std::string& getter) const
    {
        Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Name", target, setter, getter, nullptr, PSCellType::Switch, nullptr);
        row->setIdentifier("row");
        return row;
    }
    std::shared_ptr<RowTarget> target = std::make_shared<RowTarget>();
};

TEST(CellTypes, HaveNamesAndNumbersOfThePlatform)
{
    const std::pair<int, const char*> types[] = { { 0, "PSGroupCell" }, { 1, "PSLinkCell" }, { 2, "PSLinkListCell" },
        { 3, "PSListItemCell" }, { 4, "PSTitleValueCell" }, { 5, "PSSliderCell" }, { 6, "PSSwitchCell" },
        { 7, "PSStaticTextCell" }, { 8, "PSEditTextCell" }, { 9, "PSSegmentCell" }, { 10, "PSGiantIconCell" },
        { 11, "PSGiantCell" }, { 12, "PSSecureEditTextCell" }, { 13, "PSButtonCell" }, { 14, "PSEditTextViewCell" },
        { 15, "PSSpinnerCell" } };
    for (const auto& [number, name] : types) {
        EXPECT_EQ(cellTypeNamed(name), static_cast<PSCellType>(number)) << name;
        EXPECT_STREQ(nameOfCellType(static_cast<PSCellType>(number)), name);
    }
}

TEST(CellTypes, OfNamesThatAreNoneAreAbsent)
{
    for (const char* name : { "", "PSSwitch", "psswitchcell", "PSSwitchCell ", "6", "TDSwitchCell" })
        EXPECT_EQ(cellTypeNamed(name), std::nullopt) << name;
}

TEST_F(Specifiers, AreWhatTheyWereMadeOf)
{
    const Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "Calls", target, "write:row:", "read:", &RowTarget::classObject(), PSCellType::Link, nullptr);
    EXPECT_EQ(row->name(), "Calls");
    EXPECT_EQ(row->target(), target);
    EXPECT_EQ(row->setter(), "write:row:");
    EXPECT_EQ(row->getter(), "read:");
    EXPECT_EQ(row->detailControllerClass(), &RowTarget::classObject());
    EXPECT_EQ(row->cellType(), PSCellType::Link);
    EXPECT_FALSE(row->isGroup());
    EXPECT_EQ(row->identifier(), std::nullopt);
    EXPECT_EQ(row->buttonAction(), "");
    EXPECT_EQ(row->userInfo(), nullptr);
    EXPECT_EQ(row->properties(), Dictionary());
}

TEST_F(Specifiers, OfGroupsHaveAtMostAName)
{
    const Row named = PSSpecifier::groupSpecifierWithName("Default SIM");
    const Row empty = PSSpecifier::emptyGroupSpecifier();
    EXPECT_EQ(named->name(), "Default SIM");
    EXPECT_EQ(empty->name(), std::nullopt);
    for (const Row& group : { named, empty }) {
        EXPECT_TRUE(group->isGroup());
        EXPECT_EQ(group->identifier(), std::nullopt);
        EXPECT_EQ(group->target(), nullptr);
        EXPECT_EQ(group->performGetter(), Value());
        EXPECT_EQ(group->properties(), Dictionary());
    }
}

TEST_F(Specifiers, AreKnownByTheirWholeIdentifier)
{
    const Row row = PSSpecifier::emptyGroupSpecifier();
    EXPECT_FALSE(row->hasIdentifier(""));
    row->setIdentifier("AA:BB+SIM");
    EXPECT_TRUE(row->hasIdentifier("AA:BB+SIM"));
    for (const char* other : { "", "AA:BB", "aa:bb+sim", "AA:BB+SIM " })
        EXPECT_FALSE(row->hasIdentifier(other)) << other;
    row->setIdentifier("");
    EXPECT_TRUE(row->hasIdentifier(""));
    row->setIdentifier(std::nullopt);
    EXPECT_FALSE(row->hasIdentifier(""));
}

TEST_F(Specifiers, KeepPropertiesUntilTheyAreSetToNull)
{
    const Row row = PSSpecifier::emptyGroupSpecifier();
    row->setProperty_forKey(1, "key");
    row->setProperty_forKey("two", "key");
    row->setProperty_forKey(target, "object");
    row->setProperty_forKey(&RowTarget::classObject(), "class");
    EXPECT_EQ(row->properties(),
        (Dictionary { { "key", "two" }, { "object", target }, { "class", &RowTarget::classObject() } }));
    row->setProperty_forKey(nullptr, "key");
    row->setProperty_forKey(nullptr, "never there");
    EXPECT_EQ(row->propertyForKey("key"), Value());
    EXPECT_EQ(row->properties().size(), 2U);
}

TEST_F(Specifiers, AreEnabledUnlessTheirPropertySaysOtherwise)
{
    const Row row = PSSpecifier::emptyGroupSpecifier();
    EXPECT_TRUE(row->isEnabled());
    const std::pair<Value, bool> cases[] = { { true, true }, { false, false }, { 1, true }, { 0, false },
        { "YES", true }, { "no", false }, { Array { true }, false } };
    for (const auto& [property, enabled] : cases) {
        row->setProperty_forKey(property, PSProperty::enabled);
        EXPECT_EQ(row->isEnabled(), enabled);
    }
}

TEST_F(Specifiers, PostTheirNotificationWhereItHasAName)
{
    const auto posted = std::make_shared<RecordedNotifications>();
    Phone::current().darwinNotifications = posted;
    const Row row = PSSpecifier::emptyGroupSpecifier();
    for (const Value& name : { Value(), Value("changed"), Value(5) }) {
        row->setProperty_forKey(name, PSProperty::postNotification);
        EXPECT_EQ(row->notificationName(), name.optionalString());
        row->postNotification();
    }
    EXPECT_EQ(posted->names, Strings { "changed" });
    Phone::setCurrent({});
    row->setProperty_forKey("changed", PSProperty::postNotification);
    row->postNotification();
}

TEST_F(Specifiers, ReadAndWriteThroughTheirTarget)
{
    const Row row = rowOf("write:row:", "read:");
    EXPECT_EQ(row->performGetter(), Value(42));
    row->performSetterWithValue(7);
    row->setButtonAction("act:");
    row->performButtonAction();
    EXPECT_EQ(target->calls, (Strings { "read row", "write 7 row", "act row" }));
}

TEST_F(Specifiers, WithoutASetterGetterOrActionDoNothing)
{
    const Row row = rowOf("", "");
    EXPECT_EQ(row->performGetter(), Value());
    row->performSetterWithValue(7);
    row->performButtonAction();
    EXPECT_EQ(target->calls, Strings {});
}

TEST_F(Specifiers, WhoseTargetDoesNotRespondDoNothing)
{
    const Row row = rowOf("noSuchSetter:specifier:", "noSuchGetter:");
    row->setButtonAction("noSuchAction:");
    EXPECT_EQ(row->performGetter(), Value());
    row->performSetterWithValue(7);
    row->performButtonAction();
    EXPECT_EQ(target->calls, Strings {});
}

TEST_F(Specifiers, WhoseTargetIsGoneDoNothingAndDidNotKeepIt)
{
    const Row row = rowOf("write:row:", "read:");
    row->setButtonAction("act:");
    const std::weak_ptr<RowTarget> watched = target;
    target.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(row->target(), nullptr);
    EXPECT_EQ(row->performGetter(), Value());
    row->performSetterWithValue(7);
    row->performButtonAction();
}

TEST_F(Specifiers, MayBeLetGoOfByTheirSetter)
{
    Row row = rowOf("write:row:", "read:");
    const std::weak_ptr<PSSpecifier> watched = row;
    target->onWrite = [&] { row.reset(); };
    row->performSetterWithValue(7);
    EXPECT_EQ(target->calls, Strings { "write 7 row" });
    EXPECT_TRUE(watched.expired());
}

TEST_F(Specifiers, MayOutliveATargetThatTheirSetterLetsGoOf)
{
    const Row row = rowOf("write:row:", "read:");
    const std::weak_ptr<RowTarget> watched = target;
    target->onWrite = [&] { target.reset(); };
    row->performSetterWithValue(7);
    EXPECT_TRUE(watched.expired());
}

TEST_F(Specifiers, GetTheirActionBySelectorToo)
{
    const Row row = PSSpecifier::emptyGroupSpecifier();
    EXPECT_TRUE(row->respondsToSelector("setButtonAction:"));
    EXPECT_FALSE(row->respondsToSelector("setLegacyAction:"));
    row->performSelector("setButtonAction:", "act:");
    EXPECT_EQ(row->buttonAction(), "act:");
}

TEST_F(Specifiers, DescribeTheirCellAndIdentifier)
{
    EXPECT_EQ(rowOf("", "")->description(), "<PSSpecifier PSSwitchCell row>");
    EXPECT_EQ(PSSpecifier::emptyGroupSpecifier()->description(), "<PSSpecifier PSGroupCell (null)>");
}

TEST(RowsByIndex, ThatAreNotThereRaiseARangeError)
{
    const Rows rows { PSSpecifier::emptyGroupSpecifier() };
    EXPECT_EQ(&rowAtIndex(rows, 0), &rows[0]);
    for (const std::size_t index : { std::size_t { 1 }, SIZE_MAX }) {
        try {
            rowAtIndex(rows, index);
            FAIL() << index;
        } catch (const std::out_of_range& error) {
            EXPECT_EQ(
                error.what(), "objectAtIndex: index " + std::to_string(index) + " beyond bounds of a list of 1 rows");
        }
    }
}

TEST(RemovedRows, LeaveTheOthersInOrder)
{
    Rows rows;
    for (int i = 0; i < 3; ++i)
        rows.push_back(PSSpecifier::emptyGroupSpecifier());
    const Rows before = rows;
    removeRowAtIndex(rows, 1);
    EXPECT_EQ(rows, (Rows { before[0], before[2] }));
    removeRowAtIndex(rows, 1);
    removeRowAtIndex(rows, 0);
    EXPECT_EQ(rows, Rows {});
}

TEST(RemovedRows, ThatAreNotThereRaiseARangeError)
{
    Rows rows { PSSpecifier::emptyGroupSpecifier() };
    for (const std::size_t index : { std::size_t { 1 }, std::size_t { 2 }, SIZE_MAX }) {
        try {
            removeRowAtIndex(rows, index);
            FAIL() << index;
        } catch (const std::out_of_range& error) {
            EXPECT_EQ(error.what(),
                "removeObjectAtIndex: index " + std::to_string(index) + " beyond bounds of a list of 1 rows");
        }
    }
    EXPECT_EQ(rows.size(), 1U);
}

} // namespace
