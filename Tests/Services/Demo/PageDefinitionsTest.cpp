#include "PreferencesUI/PSSpecifier.h"
#include "Storage/StoredPropertyLists.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>

namespace {

constexpr const char* bundle = TANDEM_BUNDLE;
constexpr const char* pageNames[] { "Root", "Calls", "Messages", "Misc" };
constexpr const char* footerIdentifier = "CopyRightHeader";
constexpr const char* notificationPrefix = "com.vexil.tandem.";

using Strings = std::vector<std::string>;

std::string fileOf(const std::string& name)
{
    return std::string(bundle) + "/" + name;
}

Value readPropertyList(const std::string& name)
{
    std::ifstream stream(fileOf(name), std::ios::binary);
    const Bytes bytes(std::istreambuf_iterator<char>(stream), {});
    return StoredPropertyLists().read(bytes).value_or(Value());
}

Array itemsOf(const std::string& page)
{
    const Value file = readPropertyList(page + ".plist");
    const auto* items = file["items"].array();
    return items ? *items : Array();
}

std::string text(const Value& item, const char* property)
{
    return item[property].optionalString().value_or("");
}

Strings identifiersOf(const Array& items)
{
    Strings identifiers;
    for (const Value& item : items)
        identifiers.push_back(text(item, PSProperty::identifier));
    return identifiers;
}

std::size_t indexOf(const Array& items, const std::string& identifier)
{
    const Strings all = identifiersOf(items);
    return static_cast<std::size_t>(std::find(all.begin(), all.end(), identifier) - all.begin());
}

Value itemNamed(const Array& items, const std::string& identifier)
{
    const std::size_t index = indexOf(items, identifier);
    return index < items.size() ? items[index] : Value();
}

bool isGroup(const Value& item)
{
    return text(item, PSProperty::cell) == "PSGroupCell";
}

void expectSwitch(const Array& items, const std::string& key, bool byDefault, const std::string& setter)
{
    const Value item = itemNamed(items, key);
    EXPECT_EQ(text(item, PSProperty::cell), "PSSwitchCell") << key;
    EXPECT_EQ(text(item, PSProperty::cellClass), "TDSwitchCell") << key;
    EXPECT_EQ(text(item, PSProperty::key), key);
    EXPECT_EQ(item[PSProperty::defaultValue], Value(byDefault)) << key;
    EXPECT_EQ(text(item, PSProperty::setter), setter) << key;
}

void expectSlider(const Array& items, const std::string& key)
{
    const Value item = itemNamed(items, key);
    EXPECT_EQ(text(item, PSProperty::cell), "PSSliderCell") << key;
    EXPECT_EQ(text(item, PSProperty::cellClass), "TDSliderCell") << key;
    EXPECT_EQ(text(item, PSProperty::key), key);
    EXPECT_EQ(item[PSProperty::defaultValue], Value(3)) << key;
    EXPECT_EQ(item[PSProperty::minimum], Value(1)) << key;
    EXPECT_EQ(item[PSProperty::maximum], Value(10)) << key;
    EXPECT_EQ(item[PSProperty::segmentCount], Value(9)) << key;
    EXPECT_EQ(item[PSProperty::isSegmented], Value(true)) << key;
    EXPECT_EQ(item[PSProperty::showValue], Value(true)) << key;
    EXPECT_EQ(item[PSProperty::isContinuous], Value(false)) << key;
}

void expectPage(const Array& items, const std::string& identifier, const std::string& detail)
{
    EXPECT_EQ(text(itemNamed(items, identifier), PSProperty::cell), "PSLinkCell") << identifier;
    EXPECT_EQ(text(itemNamed(items, identifier), PSProperty::detail), detail);
}

void expectDirectlyAfter(const Array& items, const std::string& first, const std::string& second)
{
    EXPECT_EQ(indexOf(items, first) + 1, indexOf(items, second)) << first;
}

} // namespace

TEST(PageDefinitions, EveryPageHasTitleAndItems)
{
    for (const char* page : pageNames) {
        EXPECT_TRUE(readPropertyList(std::string(page) + ".plist")["title"].string()) << page;
        EXPECT_FALSE(itemsOf(page).empty()) << page;
    }
}

TEST(PageDefinitions, EveryRowHasKnownCellAndIdentifierOfItsOwn)
{
    for (const char* page : pageNames) {
        std::set<std::string> identifiers;
        for (const Value& item : itemsOf(page)) {
            const std::string identifier = text(item, PSProperty::identifier);
            EXPECT_TRUE(cellTypeNamed(text(item, PSProperty::cell))) << page << " " << identifier;
            EXPECT_FALSE(identifier.empty()) << page;
            EXPECT_TRUE(identifiers.insert(identifier).second) << page << " " << identifier;
            EXPECT_TRUE(isGroup(item) || item[PSProperty::label].string()) << page << " " << identifier;
        }
    }
}

TEST(PageDefinitions, EveryPageEndsWithTheFooter)
{
    for (const char* page : pageNames) {
        const Array items = itemsOf(page);
        ASSERT_FALSE(items.empty()) << page;
        EXPECT_TRUE(isGroup(items.back())) << page;
        EXPECT_EQ(text(items.back(), PSProperty::identifier), footerIdentifier) << page;
        EXPECT_TRUE(items.back()[PSProperty::footerText].isNull()) << page;
    }
}

TEST(PageDefinitions, EveryStoredValueHasDefaultAndNotification)
{
    std::set<std::string> keys;
    for (const char* page : pageNames) {
        for (const Value& item : itemsOf(page)) {
            const std::string key = text(item, PSProperty::key);
            if (key.empty())
                continue;
            EXPECT_TRUE(keys.insert(key).second) << key;
            EXPECT_FALSE(item[PSProperty::defaultValue].isNull()) << key;
            EXPECT_TRUE(text(item, PSProperty::postNotification).starts_with(notificationPrefix)) << key;
        }
    }
}

TEST(PageDefinitions, EverySwitchAndSliderStoresValue)
{
    for (const char* page : pageNames) {
        for (const Value& item : itemsOf(page)) {
            const std::string cell = text(item, PSProperty::cell);
            if (cell == "PSSwitchCell" || cell == "PSSliderCell") {
                EXPECT_FALSE(text(item, PSProperty::key).empty()) << text(item, PSProperty::identifier);
            }
        }
    }
}

TEST(PageDefinitions, EveryIconIsInTheBundleAtAllScales)
{
    for (const char* page : pageNames) {
        for (const Value& item : itemsOf(page)) {
            const std::string icon = text(item, PSProperty::icon);
            if (icon.empty())
                continue;
            for (const char* scale : { "", "@2x", "@3x" })
                EXPECT_TRUE(std::filesystem::exists(fileOf(icon + scale + ".png"))) << icon << scale;
        }
    }
}

TEST(PageDefinitions, RootKeepsTwoRowsAtTheBeginningAndFourAtTheEnd)
{
    const Array items = itemsOf("Root");
    EXPECT_EQ(identifiersOf(items),
        (Strings { "MasterGroup", "TandemEnabled", "FeaturesGroup", "Calls", "Messages", "DevicesGroup", "Bluetooth",
            "TDSimSettingsController", "MoreGroup", "Misc", "VexilProducts", footerIdentifier }));
    EXPECT_TRUE(isGroup(items.at(0)));
    EXPECT_TRUE(isGroup(items.at(items.size() - 4)));
    expectSwitch(items, "TandemEnabled", true, "tandemEnabledOrDisabled:specifier:");
}

TEST(PageDefinitions, RootOpensEveryPage)
{
    const Array items = itemsOf("Root");
    expectPage(items, "Calls", "TDCallsSettingsController");
    expectPage(items, "Messages", "TDMessagesSettingsController");
    expectPage(items, "Bluetooth", "TDBluetoothDevicesController");
    expectPage(items, "TDSimSettingsController", "TDSimSettingsController");
    expectPage(items, "Misc", "TDMiscSettingsController");
    expectPage(items, "VexilProducts", "");
    EXPECT_FALSE(text(itemNamed(items, "Calls"), PSProperty::bundleIdentifier).empty());
    EXPECT_FALSE(text(itemNamed(items, "Messages"), PSProperty::bundleIdentifier).empty());
}

TEST(PageDefinitions, CallsBeginsWithItsSwitch)
{
    const Array items = itemsOf("Calls");
    EXPECT_EQ(indexOf(items, "TandemEnabledCalls"), 0U);
    expectSwitch(items, "TandemEnabledCalls", true, "enableTandemForCalls:specifier:");
    expectSwitch(items, "ShowSimSlectionForCalls", true, "enableShowSimSelection:specifier:");
    expectSlider(items, "TandemSimSelectionTimeForCalls");
    expectDirectlyAfter(items, "ShowSimSlectionForCalls", "TandemSimSelectionTimeForCalls");
    EXPECT_FALSE(text(itemNamed(items, "ShowSimSlectionForCalls"), PSProperty::icon).empty());
}

TEST(PageDefinitions, MessagesKeepsTwoRowsAtTheBeginning)
{
    const Array items = itemsOf("Messages");
    const Strings first { "MessagesGroup", "TandemEnabledMessages", "IMToTextGroup", "TandemEnabledIMToText",
        "TandemIMToTextAsk" };
    const Strings all = identifiersOf(items);
    ASSERT_GT(all.size(), first.size());
    EXPECT_EQ(Strings(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(first.size())), first);
    EXPECT_TRUE(isGroup(items[0]));
    EXPECT_TRUE(isGroup(items[2]));
    expectSwitch(items, "TandemEnabledMessages", true, "tandemEnabledOrDisabledForMessages:specifier:");
    expectSwitch(items, "TandemEnabledIMToText", false, "tandemEnabledOrDisabledForIMToText:specifier:");
    expectSwitch(items, "TandemIMToTextAsk", true, "");
    expectSwitch(items, "ShowSimSlectionForMessages", true, "enableShowSimSelectionForMessages:specifier:");
    expectSlider(items, "TandemSimSelectionTimeForMessages");
    expectDirectlyAfter(items, "ShowSimSlectionForMessages", "TandemSimSelectionTimeForMessages");
    EXPECT_FALSE(text(itemNamed(items, "ShowSimSlectionForMessages"), PSProperty::icon).empty());
}

TEST(PageDefinitions, AppRowsHaveKeysOfTheirOwn)
{
    const std::pair<const char*, std::string> pages[] { { "Calls", "TandemCallsApp-" },
        { "Messages", "TandemMessagesApp-" } };
    for (const auto& [page, prefix] : pages) {
        const Array items = itemsOf(page);
        std::size_t apps = 0;
        for (const Value& item : items) {
            const std::string app = text(item, PSProperty::bundleIdentifier);
            if (app.empty())
                continue;
            ++apps;
            expectSwitch(items, prefix + app, true, "");
        }
        EXPECT_GE(apps, 3U) << page;
    }
}

TEST(PageDefinitions, MiscLogsAndMails)
{
    const Array items = itemsOf("Misc");
    expectSwitch(items, "TandemLoggingEnabled", false, "");
    EXPECT_EQ(text(itemNamed(items, "TandemLoggingEnabled"), PSProperty::label), "Enable Logging");
    const Value mail = itemNamed(items, "EmailLog");
    EXPECT_EQ(text(mail, PSProperty::cell), "PSButtonCell");
    EXPECT_EQ(text(mail, PSProperty::action), "emailLogFile:");
}

TEST(PageDefinitions, BundleNamesItsModuleAndFirstPage)
{
    const Value info = readPropertyList("Info.plist");
    EXPECT_EQ(text(info, "CFBundleIdentifier"), "com.vexil.tandem.preferences");
    EXPECT_EQ(text(info, "CFBundleExecutable"), "TandemPreferences.so");
    EXPECT_EQ(text(info, "NSPrincipalClass"), "TDRootListController");
    EXPECT_EQ(text(info, "CFBundleName"), "Pairo");
}

TEST(PageDefinitions, VersionStandsOnce)
{
    const std::string version = text(readPropertyList("Root.plist"), "Version");
    EXPECT_EQ(version, TANDEM_VERSION);
    EXPECT_EQ(text(readPropertyList("Info.plist"), "CFBundleVersion"), version);
    EXPECT_EQ(text(readPropertyList("Info.plist"), "CFBundleShortVersionString"), version);
}

TEST(PageDefinitions, PicturesThatPagesAskFor)
{
    for (const char* picture : { "Tandem", "twitter" }) {
        for (const char* scale : { "", "@2x", "@3x" })
            EXPECT_TRUE(std::filesystem::exists(fileOf(std::string(picture) + scale + ".png"))) << picture << scale;
    }
    EXPECT_TRUE(std::filesystem::exists(fileOf("noimage3.png")));
}
