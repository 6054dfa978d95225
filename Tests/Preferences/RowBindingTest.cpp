#include "Support/PageTest.h"
#include "TDCallsSettingsController.h"
#include "TDMessagesSettingsController.h"
#include "TDMiscSettingsController.h"
#include "TDRootLookup.h"
#include "libtandem/TDSettings.h"

namespace {

class SubclassOfRoot final : public TDRootListController {
    NS_CLASS(SubclassOfRoot, TDRootListController)
};

NS_IMPLEMENTATION(SubclassOfRoot)

class RowBinding : public PageTest {
protected:
    RowBinding()
    {
        for (const char* page : { "Root", "Calls", "Messages", "Misc" })
            phone.writePage(page, plainItems({ "a", "b", "c", "d", "e", "f" }));
    }

    static Row makeRow(Dictionary properties)
    {
        const Row row = PSSpecifier::emptyGroupSpecifier();
        for (const auto& [key, value] : properties)
            row->setProperty_forKey(value, key);
        return row;
    }
};

TEST_F(RowBinding, NegatedRowStoresTheOppositeAndShowsWhatIsStored)
{
    const Row row = makeRow({ { "key", "Key" }, { "negate", true } });
    openRoot()->setPreferenceValue_specifier(true, row);
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", false } }));
    EXPECT_EQ(root->readPreferenceValue(row), Value(false));
}

TEST_F(RowBinding, NegatedNullBecomesTrue)
{
    openRoot()->setPreferenceValue_specifier(nullptr, makeRow({ { "key", "Key" }, { "negate", true } }));
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", true } }));
}

TEST_F(RowBinding, NothingStoredShowsTheDefaultOrNull)
{
    openRoot();
    EXPECT_EQ(root->readPreferenceValue(makeRow({ { "key", "Key" }, { "default", true } })), Value(true));
    EXPECT_EQ(root->readPreferenceValue(makeRow({ { "key", "Key" } })), Value());
    EXPECT_EQ(
        root->readPreferenceValue(makeRow({ { "key", "Key" }, { "default", true }, { "negate", true } })), Value(true));
}

TEST_F(RowBinding, NoSettingsAtAllShowsTheDefault)
{
    phone.files->remove(TestPhone::settingsPath);
    EXPECT_EQ(openRoot()->readPreferenceValue(makeRow({ { "key", "Key" }, { "default", 3 } })), Value(3));
}

TEST_F(RowBinding, NotificationIsPostedAfterTheFileWasWritten)
{
    Value storedAtPost;
    phone.notifications->onPost = [&](const std::string&) { storedAtPost = phone.storedSettings(); };
    openRoot()->setPreferenceValue_specifier(true, makeRow({ { "key", "Key" }, { "PostNotification", "changed" } }));
    EXPECT_EQ(phone.notifications->names, Strings { "changed" });
    EXPECT_EQ(storedAtPost, Value(Dictionary { { "Key", true } }));
}

TEST_F(RowBinding, NotificationIsPostedThoughTheWriteCouldNotBeMade)
{
    phone.files->remove(TestPhone::settingsPath);
    openRoot()->setPreferenceValue_specifier(true, makeRow({ { "key", "Key" }, { "PostNotification", "changed" } }));
    EXPECT_EQ(phone.notifications->names, Strings { "changed" });
    EXPECT_EQ(phone.log->lines.size(), 1U);
}

TEST_F(RowBinding, MiscPageWithoutARootPagePostsAndWritesNothing)
{
    const Bytes before = *phone.readFile(TestPhone::settingsPath);
    const auto misc = openUnder<TDMiscSettingsController>(nullptr);
    misc->setPreferenceValue_specifier(true, makeRow({ { "key", "Key" }, { "PostNotification", "changed" } }));
    EXPECT_EQ(phone.notifications->names, Strings { "changed" });
    EXPECT_EQ(phone.readFile(TestPhone::settingsPath), before);
    EXPECT_EQ(misc->readPreferenceValue(makeRow({ { "key", "Key" }, { "default", true } })), Value());
}

TEST_F(RowBinding, CallsAndMessagesWithoutARootPageReadNothingAndWriteNothing)
{
    const Bytes before = *phone.readFile(TestPhone::settingsPath);
    const Row row = makeRow({ { "key", "Key" }, { "default", true }, { "PostNotification", "changed" } });
    const std::vector<std::shared_ptr<PSListController>> pages { openUnder<TDCallsSettingsController>(nullptr),
        openUnder<TDMessagesSettingsController>(nullptr) };
    for (const auto& page : pages) {
        page->setPreferenceValue_specifier(true, row);
        EXPECT_EQ(page->readPreferenceValue(row), Value());
    }
    EXPECT_EQ(phone.notifications->names, Strings {});
    EXPECT_EQ(phone.readFile(TestPhone::settingsPath), before);
}

TEST_F(RowBinding, CallsAndMessagesReloadTheCoreLibraryWithoutARootPageAndMiscDoesNot)
{
    const auto reloads = [this]<class Page>(const std::shared_ptr<Page>& page) {
        phone.storeSettings({ { "TandemEnabled", true } });
        phone.writePropertyList(TestPhone::settingsPath, Dictionary { { "TandemEnabled", false } });
        page->setPreferenceValue_specifier(true, makeRow({ { "key", "Key" } }));
        return !TDSettings::sharedSettings()->isEnabled();
    };
    EXPECT_TRUE(reloads(openUnder<TDCallsSettingsController>(nullptr)));
    EXPECT_TRUE(reloads(openUnder<TDMessagesSettingsController>(nullptr)));
    EXPECT_FALSE(reloads(openUnder<TDMiscSettingsController>(nullptr)));
}

TEST_F(RowBinding, SubclassOfTheRootPageCountsAsTheRootPage)
{
    const auto subclass = openUnder<SubclassOfRoot>(nullptr);
    const auto calls = openUnder<TDCallsSettingsController>(subclass);
    EXPECT_EQ(tandemSettingsController(subclass), subclass);
    EXPECT_EQ(tandemSettingsController(calls), subclass);
}

TEST_F(RowBinding, RootLookupClimbsToTheRootPageAndStopsAtNull)
{
    openRoot();
    const auto calls = openUnder<TDCallsSettingsController>(root);
    const auto below = openUnder<TDMiscSettingsController>(calls);
    EXPECT_EQ(tandemSettingsController(root), root);
    EXPECT_EQ(tandemSettingsController(calls), root);
    EXPECT_EQ(tandemSettingsController(below), root);
    EXPECT_EQ(tandemSettingsController(nullptr), nullptr);
    EXPECT_EQ(tandemSettingsController(openUnder<TDMiscSettingsController>(nullptr)), nullptr);
}

/// Every combination of the properties, on every page that binds rows, with and without a root page above it.
struct Combination {
    bool negate;
    bool hasDefault;
    bool posts;
    bool underRoot;
};

class RowBindingCombinations : public RowBinding, public ::testing::WithParamInterface<Combination> {
protected:
    /// What a page under the root page, or the root page itself, must do with the row.
    void expectBinding(PSListController& page, bool bound, bool postsAlways)
    {
        const Combination& c = GetParam();
        phone.storeSettings({});
        if (root)
            root->loadSettings();
        phone.notifications->names.clear();
        Dictionary properties { { "key", "Key" } };
        if (c.negate)
            properties.emplace("negate", true);
        if (c.hasDefault)
            properties.emplace("default", "default");
        if (c.posts)
            properties.emplace("PostNotification", "changed");
        const Row row = makeRow(properties);
        EXPECT_EQ(page.readPreferenceValue(row), bound && c.hasDefault ? Value("default") : Value());
        page.setPreferenceValue_specifier(true, row);
        const Value stored = bound ? Value(Dictionary { { "Key", !c.negate } }) : Value(Dictionary());
        EXPECT_EQ(phone.storedSettings(), stored);
        EXPECT_EQ(page.readPreferenceValue(row), bound ? Value(!c.negate) : Value());
        EXPECT_EQ(phone.notifications->names, c.posts && (bound || postsAlways) ? Strings { "changed" } : Strings {});
    }
};

TEST_P(RowBindingCombinations, HoldOnEveryPage)
{
    const bool bound = GetParam().underRoot;
    if (bound)
        expectBinding(*openRoot(), true, false);
    expectBinding(*openUnder<TDCallsSettingsController>(root), bound, false);
    expectBinding(*openUnder<TDMessagesSettingsController>(root), bound, false);
    expectBinding(*openUnder<TDMiscSettingsController>(root), bound, true);
}

std::vector<Combination> allCombinations()
{
    std::vector<Combination> all;
    for (int bits = 0; bits < 16; ++bits)
        all.push_back({ (bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0 });
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, RowBindingCombinations, ::testing::ValuesIn(allCombinations()));

} // namespace
