#include "Foundation/NSNotificationCenter.h"
#include "Support/TestPhone.h"
#include "libtandem/TDSettings.h"

namespace {

/// Hears of every reload, and what the settings were then.
class ReloadObserver final : public NSObject {
    NS_CLASS(ReloadObserver, NSObject)
public:
    void settingsReloaded(const std::shared_ptr<NSNotification>& /*notification*/)
    {
        heard.push_back(TDSettings::sharedSettings()->isEnabled());
    }
    std::vector<bool> heard;
};

NS_IMPLEMENTATION(ReloadObserver, NS_METHOD(settingsReloaded))

class Settings : public ::testing::Test {
protected:
    /// What every question is answered with, in the order of the header.
    std::vector<bool> answers() const
    {
        return { settings->isEnabled(), settings->isEnabledForCalls(), settings->isDefaultActionForCalls(),
            settings->isEnabledForMessages(), settings->isEnabledForIMToText(), settings->isDefaultActionForMessages(),
            settings->isLoggingEnabled() };
    }
    static Dictionary allKeysWith(const Value& value)
    {
        return { { "TandemEnabled", value }, { "TandemEnabledCalls", value }, { "ShowSimSlectionForCalls", value },
            { "TandemEnabledMessages", value }, { "TandemEnabledIMToText", value },
            { "ShowSimSlectionForMessages", value }, { "TandemLoggingEnabled", value } };
    }
    /// Writes the file and nothing else.
    void write(const Value& content) { phone.writePropertyList(TestPhone::settingsPath, content); }
    void writeAndReload(const Value& content)
    {
        write(content);
        settings->reloadSettings();
    }

    const std::vector<bool> defaults { true, true, true, true, false, true, false };
    TestPhone phone { ReloadObserver::classObject() };
    const std::shared_ptr<TDSettings> settings = TDSettings::sharedSettings();
};

TEST_F(Settings, AreOneForTheProcess)
{
    EXPECT_EQ(TDSettings::sharedSettings(), settings);
}

TEST_F(Settings, HaveTheirDefaultsWhereNothingIsStored)
{
    EXPECT_EQ(answers(), defaults);
}

TEST_F(Settings, AreWhatIsStoredUnderTheirKey)
{
    writeAndReload(allKeysWith(true));
    EXPECT_EQ(answers(), std::vector<bool>(7, true));
    writeAndReload(allKeysWith(false));
    EXPECT_EQ(answers(), std::vector<bool>(7, false));
    std::size_t position = 0;
    for (const char* key : { "TandemEnabled", "TandemEnabledCalls", "ShowSimSlectionForCalls", "TandemEnabledMessages",
             "TandemEnabledIMToText", "ShowSimSlectionForMessages", "TandemLoggingEnabled" }) {
        Dictionary stored = allKeysWith(false);
        stored.insert_or_assign(key, true);
        writeAndReload(stored);
        std::vector<bool> expected(7, false);
        expected[position++] = true;
        EXPECT_EQ(answers(), expected) << key;
    }
}

TEST_F(Settings, StayAsTheyWereUntilTheyAreReloaded)
{
    write(allKeysWith(false));
    EXPECT_EQ(answers(), defaults);
    phone.files->remove(TestPhone::settingsPath);
    EXPECT_EQ(answers(), defaults);
    writeAndReload(allKeysWith(false));
    write(allKeysWith(true));
    EXPECT_EQ(answers(), std::vector<bool>(7, false));
    settings->performSelector("reloadSettings");
    EXPECT_EQ(answers(), std::vector<bool>(7, true));
}

TEST_F(Settings, OfOtherTypesAreTheirBooleanReading)
{
    for (const Value& value : { Value(1), Value(-1), Value(0.5), Value("YES"), Value("true"), Value("1") }) {
        writeAndReload(allKeysWith(value));
        EXPECT_EQ(answers(), std::vector<bool>(7, true));
    }
    for (const Value& value : { Value(0), Value(0.0), Value("NO"), Value(""), Value("enabled"), Value(Array { true }),
             Value(Dictionary { { "TandemEnabled", true } }), Value(Bytes { 1 }), Value(Date { 1 }),
             Value(Uid { 1 }) }) {
        writeAndReload(allKeysWith(value));
        EXPECT_EQ(answers(), std::vector<bool>(7, false));
    }
}

TEST_F(Settings, HaveTheirDefaultsWhereTheFileIsMissingOrMalformed)
{
    writeAndReload(allKeysWith(false));
    phone.files->remove(TestPhone::settingsPath);
    settings->reloadSettings();
    EXPECT_EQ(answers(), defaults);
    for (const std::string content :
        { "", "bplist00", "<plist><dict><key>TandemEnabled</key><false/>", "TandemEnabled=0" }) {
        writeAndReload(allKeysWith(false));
        phone.writeFile(TestPhone::settingsPath, Bytes(content.begin(), content.end()));
        settings->reloadSettings();
        EXPECT_EQ(answers(), defaults) << content;
    }
    for (const Value& root : { Value(Array { false }), Value("TandemEnabled"), Value(false) }) {
        writeAndReload(root);
        EXPECT_EQ(answers(), defaults);
    }
}

TEST_F(Settings, HaveTheirDefaultsInPlaceOfAFolderAndWithoutServices)
{
    writeAndReload(allKeysWith(false));
    phone.files->remove(TestPhone::settingsPath);
    phone.files->createDirectory(TestPhone::settingsPath);
    settings->reloadSettings();
    EXPECT_EQ(answers(), defaults);
    Phone::setCurrent({});
    settings->reloadSettings();
    EXPECT_EQ(answers(), defaults);
}

TEST_F(Settings, AreReadFromXmlToo)
{
    const std::string xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>TandemEnabled</key><false/></dict></plist>)";
    phone.writeFile(TestPhone::settingsPath, Bytes(xml.begin(), xml.end()));
    settings->reloadSettings();
    EXPECT_FALSE(settings->isEnabled());
}

TEST_F(Settings, AreLookedUpByTheExactKey)
{
    writeAndReload(Dictionary { { "tandemEnabled", false }, { "TandemEnabled ", false }, { "", false } });
    EXPECT_EQ(answers(), defaults);
}

TEST_F(Settings, TellOfEveryReloadAfterTheyWereRead)
{
    const auto observer = std::make_shared<ReloadObserver>();
    NSNotificationCenter::defaultCenter().addObserver_selector_name(
        observer, "settingsReloaded:", "com.vexil.tandem.settingsReloaded");
    settings->reloadSettings();
    writeAndReload(allKeysWith(false));
    writeAndReload(Array {});
    EXPECT_EQ(observer->heard, (std::vector<bool> { true, false, true }));
}

TEST_F(Settings, AreNotWrittenByReading)
{
    phone.files->remove(TestPhone::settingsPath);
    settings->reloadSettings();
    EXPECT_FALSE(phone.files->exists(TestPhone::settingsPath));
    EXPECT_EQ(phone.notifications->names, Strings {});
    EXPECT_EQ(phone.log->lines, Strings {});
}

} // namespace
