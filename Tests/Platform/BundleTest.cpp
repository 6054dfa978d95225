#include "Foundation/NSBundle.h"
#include "Platform/PhoneTest.h"
#include "UIKit/UIView.h"

namespace {

class Bundles : public PhoneTest {
protected:
    /// A string table of the bundle at that path.
    void writeTable(const std::string& language, const std::string& table, const Value& texts)
    {
        phone.writePropertyList(
            std::string(TestPhone::bundlePath) + "/" + language + ".lproj/" + table + ".strings", texts);
    }
    void setLanguages(std::vector<std::string> languages) { Phone::current().languages = std::move(languages); }
    std::string text(const std::string& key, const std::string& value = "", const std::string& table = "") const
    {
        return bundle->localizedStringForKey_value_table(key, value, table);
    }

    const std::shared_ptr<NSBundle> bundle = NSBundle::bundleWithPath(TestPhone::bundlePath);
};

TEST_F(Bundles, OfTheApplicationIsTheOneThatThePhoneNames)
{
    EXPECT_EQ(NSBundle::mainBundle()->bundlePath(), "/Applications/Preferences.app");
    Phone::current().mainBundlePath = "/Elsewhere.app";
    EXPECT_EQ(NSBundle::mainBundle()->bundlePath(), "/Elsewhere.app");
}

TEST_F(Bundles, OfAClassIsWhereItsModuleWasLoadedFrom)
{
    EXPECT_EQ(NSBundle::bundleForClass(testProgramClass)->bundlePath(), TestPhone::bundlePath);
    NSBundle::registerModuleOfClass(testProgramClass, "/Moved.bundle");
    EXPECT_EQ(NSBundle::bundleForClass(testProgramClass)->bundlePath(), "/Moved.bundle");
}

TEST_F(Bundles, OfAClassThatCameFromNoneIsTheApplications)
{
    EXPECT_EQ(NSBundle::bundleForClass(UIView::classObject())->bundlePath(), "/Applications/Preferences.app");
}

TEST_F(Bundles, GiveThePathOfAFileThatIsThere)
{
    phone.writeFile(std::string(TestPhone::bundlePath) + "/Root.plist", {});
    phone.writeFile(std::string(TestPhone::bundlePath) + "/plain", {});
    EXPECT_EQ(bundle->pathForResource_ofType("Root", "plist"),
        "/Library/PreferenceBundles/TandemPreferences.bundle/Root.plist");
    EXPECT_EQ(bundle->pathForResource_ofType("Root.plist", ""),
        "/Library/PreferenceBundles/TandemPreferences.bundle/Root.plist");
    EXPECT_EQ(bundle->pathForResource_ofType("plain", ""), "/Library/PreferenceBundles/TandemPreferences.bundle/plain");
}

TEST_F(Bundles, GiveNoPathOfAFileThatIsNotThere)
{
    phone.writeFile(std::string(TestPhone::bundlePath) + "/plain", {});
    EXPECT_EQ(bundle->pathForResource_ofType("plain", "plist"), std::nullopt);
    EXPECT_EQ(bundle->pathForResource_ofType("Root", "plist"), std::nullopt);
    EXPECT_EQ(NSBundle::bundleWithPath("/No.bundle")->pathForResource_ofType("plain", ""), std::nullopt);
    EXPECT_EQ(NSBundle::bundleWithPath("")->pathForResource_ofType("plain", ""), std::nullopt);
}

TEST_F(Bundles, TranslateIntoTheBestLanguageThatHasTheText)
{
    writeTable("de", "Localizable", Dictionary { { "Calls", "Anrufe" } });
    writeTable("fr", "Localizable", Dictionary { { "Calls", "Appels" }, { "Messages", "Messages (fr)" } });
    setLanguages({ "de-AT", "de", "fr" });
    EXPECT_EQ(text("Calls"), "Anrufe");
    EXPECT_EQ(text("Messages"), "Messages (fr)");
    setLanguages({ "fr", "de" });
    EXPECT_EQ(text("Calls"), "Appels");
}

TEST_F(Bundles, ShowTheKeyWhereThereIsNoTranslationAndNoFallback)
{
    writeTable("de", "Localizable", Dictionary { { "Calls", "Anrufe" } });
    EXPECT_EQ(text("Calls"), "Calls");
    setLanguages({ "de" });
    EXPECT_EQ(text("calls"), "calls");
    EXPECT_EQ(text("Messages"), "Messages");
    EXPECT_EQ(text(""), "");
}

TEST_F(Bundles, ShowTheFallbackWhereThereIsNoTranslation)
{
    writeTable("de", "Localizable", Dictionary { { "Calls", "Anrufe" } });
    setLanguages({ "de" });
    EXPECT_EQ(text("Messages", "fallback"), "fallback");
    EXPECT_EQ(text("Calls", "fallback"), "Anrufe");
}

TEST_F(Bundles, ShowAnEmptyTranslationAsItIs)
{
    writeTable("de", "Localizable", Dictionary { { "Calls", "" } });
    setLanguages({ "de" });
    EXPECT_EQ(text("Calls", "fallback"), "");
}

TEST_F(Bundles, LookInTheTableOfThatNameAlone)
{
    writeTable("de", "Localizable", Dictionary { { "Calls", "Anrufe" } });
    writeTable("de", "Root", Dictionary { { "Calls", "Telefonate" } });
    setLanguages({ "de" });
    EXPECT_EQ(text("Calls", "", "Root"), "Telefonate");
    EXPECT_EQ(text("Calls", "", "Localizable"), "Anrufe");
    EXPECT_EQ(text("Calls", "", "Misc"), "Calls");
    EXPECT_EQ(text("Calls", "", "../fr.lproj/Localizable"), "Calls");
}

TEST_F(Bundles, PassOverATableThatCannotBeRead)
{
    const std::string folder = std::string(TestPhone::bundlePath) + "/de.lproj";
    phone.writeFile(folder + "/Localizable.strings", bytesOf("\"Calls\" = \"Anrufe"));
    writeTable("fr", "Localizable", Array { "Calls" });
    phone.files->createDirectory(std::string(TestPhone::bundlePath) + "/es.lproj/Localizable.strings");
    writeTable("it", "Localizable", Dictionary { { "Calls", "Chiamate" } });
    setLanguages({ "de", "fr", "es", "", "it" });
    EXPECT_EQ(text("Calls"), "Chiamate");
}

TEST_F(Bundles, PassOverATranslationThatIsNoText)
{
    writeTable("de", "Localizable", Dictionary { { "Calls", Dictionary { { "one", "Anruf" } } }, { "Messages", 5 } });
    writeTable("fr", "Localizable", Dictionary { { "Calls", "Appels" } });
    setLanguages({ "de", "fr" });
    EXPECT_EQ(text("Calls"), "Appels");
    EXPECT_EQ(text("Messages"), "Messages");
}

TEST_F(Bundles, ReadAChangedTableAtTheNextLookUp)
{
    setLanguages({ "de" });
    EXPECT_EQ(text("Calls"), "Calls");
    writeTable("de", "Localizable", Dictionary { { "Calls", "Anrufe" } });
    EXPECT_EQ(text("Calls"), "Anrufe");
}

TEST_F(Bundles, WithoutServicesShowTheKey)
{
    Phone::setCurrent({});
    Phone::current().languages = { "de" };
    EXPECT_EQ(text("Calls"), "Calls");
}

} // namespace
