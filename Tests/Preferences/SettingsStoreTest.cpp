#include "Foundation/NSNotificationCenter.h"
#include "Support/PageTest.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* path = TestPhone::settingsPath;

/// The effective user while it lives: root may write what a user may not.
class AsUser {
public:
    AsUser()
    {
        if (geteuid() == 0)
            _changed = seteuid(65534) == 0;
    }
    ~AsUser()
    {
        if (_changed && seteuid(0) != 0)
            std::abort();
    }
    AsUser(const AsUser&) = delete;
    AsUser& operator=(const AsUser&) = delete;

private:
    bool _changed = false;
};

class SettingsStore : public PageTest {
protected:
    SettingsStore() { phone.writePage("Root", plainItems({ "a", "b", "c", "d", "e", "f" })); }

    /// A row with that key and nothing else.
    Row rowWithKey(const std::string& key)
    {
        const Row row = PSSpecifier::emptyGroupSpecifier();
        row->setProperty_forKey(key, PSProperty::key);
        return row;
    }
};

TEST_F(SettingsStore, ChangingOneSwitchRewritesTheWholeFileAsBinaryThoughItWasXml)
{
    const std::string xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>Kept</key><integer>-5</integer><key>Switch</key><false/></dict></plist>)";
    phone.writeFile(path, Bytes(xml.begin(), xml.end()));
    openRoot()->setPreferenceValue_specifier(true, rowWithKey("Switch"));
    const Bytes written = *phone.readFile(path);
    EXPECT_EQ(std::string(written.begin(), written.begin() + 8), "bplist00");
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Kept", -5 }, { "Switch", true } }));
}

TEST_F(SettingsStore, TogglingARowWithoutASettingsFileLogsAndLeavesNoFile)
{
    phone.files->remove(path);
    openRoot()->setPreferenceValue_specifier(true, rowWithKey("Switch"));
    EXPECT_EQ(phone.log->lines,
        Strings { "com.vexil.Tandem: Error => Unable to save settings to "
                  "/var/mobile/Library/Preferences/com.vexil.tandem.plist and settings: (null) AND error: Error "
                  "Domain=NSCocoaErrorDomain Code=3851 \"Property list invalid for format: 200 (property lists cannot "
                  "contain NULL)\"" });
    EXPECT_FALSE(phone.files->exists(path));
    EXPECT_FALSE(root->settings());
}

TEST_F(SettingsStore, NullRemovesTheKeyFromTheFile)
{
    phone.storeSettings({ { "Gone", 1 }, { "Kept", 2 } });
    openRoot()->updateSettingsDict_forKey(nullptr, "Gone");
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Kept", 2 } }));
}

TEST_F(SettingsStore, SettingsChangedNotificationMakesTheNextReadSeeTheFile)
{
    phone.storeSettings({ { "Key", "old" } });
    openRoot();
    phone.storeSettings({ { "Key", "new" } });
    EXPECT_EQ(root->readPreferenceValue(rowWithKey("Key")), Value("old"));
    NSNotificationCenter::defaultCenter().postNotificationName("com.vexil.tandemSettingsChanged");
    EXPECT_EQ(root->readPreferenceValue(rowWithKey("Key")), Value("new"));
}

TEST_F(SettingsStore, SettingsChangedNotificationIsHeardFromThePagesFirstAppearanceOn)
{
    phone.storeSettings({ { "Key", "old" } });
    root = std::make_shared<TDRootListController>();
    root->initForContentSize(size);
    phone.storeSettings({ { "Key", "new" } });
    NSNotificationCenter::defaultCenter().postNotificationName("com.vexil.tandemSettingsChanged");
    EXPECT_EQ(root->settings(), (Dictionary { { "Key", "old" } }));
    navigation->pushViewController_animated(root, false);
    NSNotificationCenter::defaultCenter().postNotificationName("com.vexil.tandemSettingsChanged");
    EXPECT_EQ(root->settings(), (Dictionary { { "Key", "new" } }));
}

TEST_F(SettingsStore, ChangeByAnotherProgramWithoutANotificationIsWrittenOver)
{
    phone.storeSettings({ { "Key", "old" } });
    openRoot();
    phone.storeSettings({ { "Key", "theirs" }, { "Added", true } });
    root->updateSettingsDict_forKey(1, "Other");
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", "old" }, { "Other", 1 } }));
}

TEST_F(SettingsStore, ReaderThatHasTheFileOpenSeesTheChange)
{
    openRoot();
    std::ifstream reader(phone.hostPath(path), std::ios::binary);
    root->updateSettingsDict_forKey("new", "Key");
    EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(reader), {}), phone.readFile(path));
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", "new" } }));
}

TEST_F(SettingsStore, DirectoryInPlaceOfTheFileIsNeitherReadNorReplaced)
{
    phone.files->remove(path);
    phone.files->createDirectory(path);
    openRoot()->setSettings(Dictionary { { "Key", 1 } });
    root->updateSettingsDict_forKey(2, "Key");
    EXPECT_EQ(phone.log->lines,
        Strings { "com.vexil.Tandem: Error => Unable to save settings to "
                  "/var/mobile/Library/Preferences/com.vexil.tandem.plist and settings: {\n    Key = 2;\n}" });
    EXPECT_TRUE(phone.files->exists(path));
}

TEST_F(SettingsStore, DirectoryInPlaceOfTheFileAtLoadGivesNoSettings)
{
    phone.files->remove(path);
    phone.files->createDirectory(path);
    EXPECT_FALSE(openRoot()->settings());
}

TEST_F(SettingsStore, UnwritableFileIsLoggedAndMemoryKeepsTheNewValue)
{
    phone.storeSettings({ { "Key", "old" } });
    chmod(phone.hostPath("").c_str(), 0755);
    chmod(phone.hostPath(path).c_str(), 0444);
    openRoot();
    {
        const AsUser user;
        root->updateSettingsDict_forKey("new", "Key");
    }
    EXPECT_EQ(phone.log->lines,
        Strings { "com.vexil.Tandem: Error => Unable to save settings to "
                  "/var/mobile/Library/Preferences/com.vexil.tandem.plist and settings: {\n    Key = new;\n}" });
    EXPECT_EQ(root->readPreferenceValue(rowWithKey("Key")), Value("new"));
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", "old" } }));
}

TEST_F(SettingsStore, FullDiskIsLoggedAndTheOldFileIsWhole)
{
    phone.storeSettings({ { "Key", "old" } });
    openRoot();
    const std::string large(5000, 'x');
    rlimit before {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit { 2000, before.rlim_max };
    setrlimit(RLIMIT_FSIZE, &limit);
    root->updateSettingsDict_forKey(large, "Key");
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(phone.log->lines,
        Strings { "com.vexil.Tandem: Error => Unable to save settings to "
                  "/var/mobile/Library/Preferences/com.vexil.tandem.plist and settings: {\n    Key = "
            + large + ";\n}" });
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", "old" } }));
    EXPECT_EQ(root->readPreferenceValue(rowWithKey("Key")), Value(large));
}

TEST_F(SettingsStore, ValueThatNoPropertyListHoldsIsLoggedAndTheFileUntouched)
{
    phone.storeSettings({ { "Key", "old" } });
    const Bytes before = *phone.readFile(path);
    openRoot()->updateSettingsDict_forKey(PSSpecifier::emptyGroupSpecifier(), "Key");
    EXPECT_EQ(phone.log->lines,
        Strings {
            "com.vexil.Tandem: Error => Unable to save settings to "
            "/var/mobile/Library/Preferences/com.vexil.tandem.plist and settings: {\n    Key = <PSSpecifier "
            "PSGroupCell (null)>;\n} AND error: Error Domain=NSCocoaErrorDomain Code=3851 \"Property list invalid for "
            "format: 200 (property lists cannot contain objects of type 'PSSpecifier')\"" });
    EXPECT_EQ(*phone.readFile(path), before);
}

TEST_F(SettingsStore, MalformedFileGivesNoSettingsAndIsNotOverwritten)
{
    for (const std::string content : { "", "bplist00", "not a property list", "<plist><array/></plist>" }) {
        SCOPED_TRACE(content);
        phone.writeFile(path, Bytes(content.begin(), content.end()));
        EXPECT_FALSE(openRoot()->settings());
        root->updateSettingsDict_forKey(true, "Key");
        EXPECT_EQ(phone.readFile(path), Bytes(content.begin(), content.end()));
    }
}

TEST_F(SettingsStore, FileCutOffAtEveryByteNeverCrashesAndIsNeverOverwritten)
{
    phone.storeSettings(
        { { "Calls", true }, { "Time", 3.5 }, { "List", Array { 1, "zwei", -3 } }, { "Ünïcode", Bytes { 1, 2 } } });
    const Bytes whole = *phone.readFile(path);
    openRoot();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        phone.writeFile(path, cut);
        root->loadSettings();
        EXPECT_FALSE(root->settings()) << length;
        root->updateSettingsDict_forKey(true, "Calls");
        EXPECT_EQ(phone.readFile(path), cut) << length;
    }
}

TEST_F(SettingsStore, RowWithoutAKeyWritesTheFileUnchanged)
{
    phone.storeSettings({ { "Key", 1 } });
    openRoot()->setPreferenceValue_specifier(true, PSSpecifier::emptyGroupSpecifier());
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "Key", 1 } }));
    EXPECT_EQ(phone.log->lines, Strings {});
}

TEST_F(SettingsStore, EveryOtherValueOfTheFileSurvivesAChange)
{
    const Dictionary settings { { "negative", -5 }, { "huge", 18446744073709551611UL }, { "real", 0.1 },
        { "date", Date { 1.25 } }, { "data", Bytes {} }, { "uid", Uid { 7 } }, { "empty", "" },
        { "日本", Array { Dictionary { { "x", true } } } } };
    phone.storeSettings(settings);
    openRoot()->updateSettingsDict_forKey(true, "Switch");
    Dictionary expected = settings;
    expected.emplace("Switch", true);
    EXPECT_EQ(phone.storedSettings(), Value(expected));
}

} // namespace
