#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDCallsSettingsController.h"
#include "TDMessagesSettingsController.h"
#include "TDMiscSettingsController.h"
#include "TDPageStyle.h"
#include "TDProductVersion.h"

#include <chrono>
#include <cstdlib>
#include <fstream>

namespace {

/// A package database of its own, filled by the package tool itself, which the query tool reads while this lives.
class PackageDatabase {
public:
    PackageDatabase()
    {
        std::filesystem::create_directories(admin() / "updates");
        std::filesystem::create_directories(admin() / "info");
        std::filesystem::create_directories(_folder.path() / "root");
        std::ofstream(admin() / "status");
        std::ofstream(admin() / "available");
        setenv("DPKG_ADMINDIR", admin().c_str(), 1);
    }
    ~PackageDatabase() { unsetenv("DPKG_ADMINDIR"); }
    PackageDatabase(const PackageDatabase&) = delete;
    PackageDatabase& operator=(const PackageDatabase&) = delete;

    /// Builds a package of that name and installs it.
    void install(const std::string& name, const std::string& version)
    {
        const auto tree = _folder.path() / name;
        std::filesystem::create_directories(tree / "DEBIAN");
        std::ofstream(tree / "DEBIAN/control")
            << "Package: " << name << "\nVersion: " << version
            << "\nArchitecture: all\nMaintainer: Test <test@vexil.example>\nDescription: test\n";
        run("dpkg-deb --build --root-owner-group '" + tree.string() + "' '" + tree.string() + ".deb'");
        run("dpkg --force-not-root --force-script-chrootless --admindir='" + admin().string() + "' --instdir='"
            + (_folder.path() / "root").string() + "' --log=/dev/null -i '" + tree.string() + ".deb'");
    }

    /// Enters a package as the database holds it; one that is not installed has no version.
    void enter(const std::string& name, const std::string& status, const std::string& version)
    {
        std::ofstream entries(admin() / "status", std::ios::app);
        entries << "Package: " << name << "\nStatus: " << status
                << "\nMaintainer: Test <test@vexil.example>\nArchitecture: all\nDescription: test\n";
        if (!version.empty())
            entries << "Version: " << version << "\n";
        entries << "\n";
    }

private:
    std::filesystem::path admin() const { return _folder.path() / "admin"; }
    static void run(const std::string& command)
    {
        // The tool looks for programs of the system's folders, which a user's own search path may leave out.
        EXPECT_EQ(std::system(("PATH=\"$PATH:/usr/sbin:/sbin\" " + command + " >/dev/null 2>&1").c_str()), 0)
            << command;
    }

    TemporaryDirectory _folder;
};

/// Puts a folder before all others of the search path while it lives.
class FirstInSearchPath {
public:
    explicit FirstInSearchPath(const std::filesystem::path& folder)
    {
        setenv("PATH", (folder.string() + ":" + _before).c_str(), 1);
    }
    ~FirstInSearchPath() { setenv("PATH", _before.c_str(), 1); }
    FirstInSearchPath(const FirstInSearchPath&) = delete;
    FirstInSearchPath& operator=(const FirstInSearchPath&) = delete;

private:
    std::string _before = std::getenv("PATH");
};

std::string thisYear()
{
    const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
    return std::to_string(static_cast<int>(std::chrono::year_month_day(today).year()));
}

/// The bundle's dictionary is kept for the life of the process, so what is said of its first reading needs a process of
/// its own: the death test runs the program anew for it.
template <class Checks>
void inAFreshProcess(Checks checks)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            checks();
            std::exit(::testing::Test::HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

class Version : public PageTest {
protected:
    Version()
    {
        for (const char* page : { "Root", "Calls", "Messages", "Misc" })
            phone.writePage(page, Array { item("PSGroupCell", "first"), item("PSGroupCell", "CopyRightHeader") });
    }

    static std::optional<std::string> footerOf(PSListController& page)
    {
        return page.footerOfGroup(rowOf(page, "CopyRightHeader"));
    }

    void giveBundleVersion(const Value& version)
    {
        phone.writePropertyList(stringByAppendingPathComponent(TestPhone::bundlePath, "Root.plist"),
            Dictionary { { "Version", version }, { "items", plainItems({ "CopyRightHeader" }) } });
    }
};

TEST_F(Version, InstalledPackageGivesTheVersion)
{
    PackageDatabase packages;
    packages.install("com.vexil.tandem", "4.5.6~test-1");
    giveBundleVersion("bundle");
    EXPECT_EQ(packageVersion("com.vexil.tandem"), "4.5.6~test-1");
    EXPECT_EQ(getProductVersion(), "4.5.6~test-1");
}

TEST_F(Version, PackageThatIsNotInstalledFallsBackToTheBundle)
{
    PackageDatabase packages;
    giveBundleVersion("1.2.3");
    EXPECT_EQ(packageVersion("com.vexil.tandem"), std::nullopt);
    inAFreshProcess([] { EXPECT_EQ(getProductVersion(), "1.2.3"); });
}

TEST_F(Version, NeitherPackageNorBundleShowsThePlaceholderForNull)
{
    PackageDatabase packages;
    phone.files->remove(stringByAppendingPathComponent(TestPhone::bundlePath, "Root.plist"));
    inAFreshProcess([] {
        EXPECT_EQ(getProductVersion(), std::nullopt);
        EXPECT_EQ(std::make_shared<TDCallsSettingsController>()->copryRightSpecifierText(2026),
            "Version (null) © 2026 Vexil. All rights reserved.");
    });
}

TEST_F(Version, BundleVersionIsReadAgainUntilItCanBeRead)
{
    PackageDatabase packages;
    phone.files->remove(stringByAppendingPathComponent(TestPhone::bundlePath, "Root.plist"));
    inAFreshProcess([this] {
        EXPECT_EQ(getProductInfoDict(), nullptr);
        giveBundleVersion("first");
        EXPECT_EQ(getProductVersion(), "first");
        giveBundleVersion("second");
        EXPECT_EQ(getProductVersion(), "first");
    });
}

TEST_F(Version, IdentifierWithAQuoteIsPassedThroughUnchanged)
{
    PackageDatabase packages;
    // The quote ends the quoted word: the shell sees a word that is never closed, and fails.
    EXPECT_EQ(packageVersion("it's"), std::nullopt);
    // With a second one the shell sees two words, exactly as they were given.
    packages.install("abc", "1");
    EXPECT_EQ(packageVersion("a'b'c"), "1");
}

TEST_F(Version, OutputOfMoreThanOneBufferIsJoinedUnchanged)
{
    PackageDatabase packages;
    std::string expected;
    for (int i = 0; i < 4; ++i) {
        const std::string version = std::to_string(i) + "." + std::string(600, static_cast<char>('0' + i));
        packages.install("long" + std::to_string(i), version);
        expected += version;
    }
    EXPECT_GT(expected.size(), 2 * 1023U);
    EXPECT_EQ(packageVersion("long*"), expected);
}

TEST_F(Version, PackageThatIsKnownButNotInstalledHasAnEmptyVersion)
{
    PackageDatabase packages;
    packages.enter("com.vexil.tandem", "install ok not-installed", "");
    giveBundleVersion("bundle");
    EXPECT_EQ(packageVersion("com.vexil.tandem"), "");
    EXPECT_EQ(getProductVersion(), "");
}

TEST_F(Version, QueryToolOfAnotherFolderIsNotAsked)
{
    PackageDatabase packages;
    packages.install("abc", "1");
    const TemporaryDirectory folder;
    std::ofstream(folder.path() / "dpkg-query") << "#!/bin/sh\nprintf other\n";
    std::filesystem::permissions(folder.path() / "dpkg-query", std::filesystem::perms::owner_all);
    const FirstInSearchPath first(folder.path());
    EXPECT_EQ(packageVersion("abc"), "1");
}

TEST_F(Version, CharacterAcrossTheEndOfABufferStaysWhole)
{
    PackageDatabase packages;
    const std::string version = std::string(1022, '1') + "é😀";
    packages.enter("abc", "install ok installed", version);
    EXPECT_EQ(packageVersion("abc"), version);
}

TEST_F(Version, BytesThatAreNoTextAreReplaced)
{
    PackageDatabase packages;
    packages.enter("abc", "install ok installed", "1\xE9.2");
    EXPECT_EQ(packageVersion("abc"), "1\uFFFD.2");
}

TEST_F(Version, TrailingNewlineIsKept)
{
    PackageDatabase packages;
    packages.install("abc", "1");
    EXPECT_EQ(packageVersion("abc'; echo '"), "1\n");
}

TEST_F(Version, FailingStatusGivesNothingThoughThereWasOutput)
{
    EXPECT_EQ(packageVersion("x'; echo output; exit 3; '"), std::nullopt);
}

TEST_F(Version, EveryPageGetsAFooterWithTheVersionAndTheCurrentYear)
{
    PackageDatabase packages;
    packages.install("com.vexil.tandem", "7");
    const std::string expected = "Version 7 © " + thisYear() + " Vexil. All rights reserved.";
    EXPECT_EQ(footerOf(*openRoot()), expected);
    EXPECT_EQ(footerOf(*open<TDCallsSettingsController>()), expected);
    EXPECT_EQ(footerOf(*open<TDMessagesSettingsController>()), expected);
    EXPECT_EQ(footerOf(*open<TDMiscSettingsController>()), expected);
}

TEST_F(Version, FormatOfTheFooterIsNotTranslated)
{
    PackageDatabase packages;
    packages.install("com.vexil.tandem", "7");
    phone.translate("de", { { "Version %@ © %ld Vexil. All rights reserved.", "Fassung %@, %ld" } });
    EXPECT_EQ(openRoot()->copryRightSpecifierText(1999), "Version 7 © 1999 Vexil. All rights reserved.");
}

TEST_F(Version, FooterSurvivesARebuildOfTheRows)
{
    const auto page = open<TDCallsSettingsController>();
    const auto footer = footerOf(*page);
    page->reloadSpecifiers();
    EXPECT_EQ(footerOf(*page), footer);
    EXPECT_TRUE(footer);
}

TEST_F(Version, PageWithoutTheFooterRowHasNoFooter)
{
    phone.writePage("Calls", plainItems({ "a", "b" }));
    const auto page = open<TDCallsSettingsController>();
    EXPECT_EQ(page->copyRightSpecifier(), nullptr);
    EXPECT_EQ(page->footerOfGroup(rowOf(*page, "a")), std::nullopt);
}

TEST_F(Version, HooksAnswerBySelectorToo)
{
    PackageDatabase packages;
    packages.install("com.vexil.tandem", "7");
    const auto page = open<TDCallsSettingsController>();
    EXPECT_EQ(
        page->performSelector("copryRightSpecifierText:", 1999), Value("Version 7 © 1999 Vexil. All rights reserved."));
    EXPECT_EQ(page->performSelector("hasCustomNavigationBarColor"), Value(true));
    EXPECT_EQ(page->performSelector("customNavigationBarColor"), Value(accentColor));
    EXPECT_EQ(page->performSelector("copyRightSpecifier"), Value(rowOf(*page, "CopyRightHeader")));
}

TEST_F(Version, ShareMessageIsTheTextOrItsTranslationAndThePictureComesFromTheBundle)
{
    const std::string text = "I'm Loving #Pairo, which brings ability to choose sim while dialing a number or texting "
                             "from dual (e)Sim iPhones.";
    const auto page = open<TDCallsSettingsController>();
    EXPECT_EQ(page->twitterMessage(), text);
    EXPECT_EQ(page->twitterImage(), nullptr);
    phone.translate("de", { { text, "Übersetzt" } });
    phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "twitter.png"), phone.png(8, 4));
    EXPECT_EQ(page->twitterMessage(), "Übersetzt");
    ASSERT_TRUE(page->twitterImage());
    EXPECT_EQ(page->twitterImage()->size(), (CGSize { 8, 4 }));
}

} // namespace
