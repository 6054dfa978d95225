#include "Foundation/FileCache.h"
#include "Foundation/NSString.h"
#include "Platform/PhoneTest.h"
#include "PreferencesUI/PSPageDefinition.h"
#include "Support/AgedFiles.h"

#include <chrono>

namespace {

constexpr const char* path = "/file";
constexpr const char* bundle = TestPhone::bundlePath;

std::int64_t nanosecondsAgo(std::chrono::nanoseconds time)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::nanoseconds(now - time).count();
}

/// Of a file that nobody has changed for a minute.
FileStamp settledStamp(std::int64_t size = 1)
{
    static const std::int64_t time = nanosecondsAgo(std::chrono::minutes(1));
    return { 1, 2, size, time, time };
}

class CachedFile : public ::testing::Test {
protected:
    int get(const std::optional<FileStamp>& stamp)
    {
        return cache.get(path, stamp, [this] { return ++made; });
    }

    FileCache<int> cache;
    int made = 0;
};

TEST_F(CachedFile, IsMadeOnceForAStamp)
{
    EXPECT_EQ(get(settledStamp()), 1);
    EXPECT_EQ(get(settledStamp()), 1);
}

TEST_F(CachedFile, IsMadeAnewWhenAnyPartOfTheStampIsAnother)
{
    const FileStamp first = settledStamp();
    get(first);
    int expected = 1;
    for (FileStamp other : { FileStamp { 9, first.inode, first.size, first.modified, first.changed },
             FileStamp { first.device, 9, first.size, first.modified, first.changed },
             FileStamp { first.device, first.inode, 9, first.modified, first.changed },
             FileStamp { first.device, first.inode, first.size, first.modified - 1, first.changed },
             FileStamp { first.device, first.inode, first.size, first.modified, first.changed - 1 } }) {
        EXPECT_EQ(get(other), ++expected);
        EXPECT_EQ(get(other), expected);
    }
}

TEST_F(CachedFile, IsMadeAnewWhileItMayChangeWithoutAnotherStamp)
{
    const std::int64_t now = nanosecondsAgo({});
    const std::int64_t before = settledStamp().modified;
    int expected = 0;
    for (const FileStamp& fresh :
        { FileStamp { 1, 2, 1, now, now }, FileStamp { 1, 2, 1, before, now }, FileStamp { 1, 2, 1, now, before },
            FileStamp { 1, 2, 1, nanosecondsAgo(std::chrono::hours(-1)), before } }) {
        EXPECT_FALSE(isSettled(fresh));
        EXPECT_EQ(get(fresh), ++expected);
        EXPECT_EQ(get(fresh), ++expected);
    }
}

TEST_F(CachedFile, ThatIsMissingIsNothingAndMadeAnewWhenItIsBack)
{
    EXPECT_EQ(get(std::nullopt), 0);
    EXPECT_EQ(get(settledStamp()), 1);
    EXPECT_EQ(get(std::nullopt), 0);
    EXPECT_EQ(get(settledStamp()), 2);
}

TEST_F(CachedFile, IsKeptByItsPath)
{
    get(settledStamp());
    EXPECT_EQ(cache.get("/other", settledStamp(), [] { return 7; }), 7);
    EXPECT_EQ(get(settledStamp()), 1);
}

/// The files of the phone, none changed for long.
class SettledFiles : public PhoneTest {
protected:
    SettledFiles() { Phone::current().files = files; }

    static std::string inBundle(const std::string& name) { return stringByAppendingPathComponent(bundle, name); }

    const std::shared_ptr<AgedFiles> files = std::make_shared<AgedFiles>(Phone::current().files);
    const std::shared_ptr<PSSpecifier> target = PSSpecifier::emptyGroupSpecifier();
};

TEST_F(SettledFiles, PageDefinitionsAreReadOnceUntilTheyChange)
{
    NSBundle::registerModuleOfClass(PSSpecifier::classObject(), bundle);
    phone.writePage("Page", plainItems({ "a" }));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(identifiersOf(loadPageDefinition("Page", target).rows), Strings { "a" });
    EXPECT_EQ(files->takeRead(), Strings { inBundle("Page.plist") });
    phone.writePage("Page", plainItems({ "a", "b" }));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(identifiersOf(loadPageDefinition("Page", target).rows), (Strings { "a", "b" }));
    EXPECT_EQ(files->takeRead(), Strings { inBundle("Page.plist") });
    phone.files->remove(inBundle("Page.plist"));
    EXPECT_EQ(identifiersOf(loadPageDefinition("Page", target).rows), Strings {});
}

TEST_F(SettledFiles, PageDefinitionsThatAreDamagedAreReadOnceToo)
{
    NSBundle::registerModuleOfClass(PSSpecifier::classObject(), bundle);
    phone.writeFile(inBundle("Page.plist"), bytesOf("<plist>"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(loadPageDefinition("Page", target).rows, Rows {});
    EXPECT_EQ(files->takeRead(), Strings { inBundle("Page.plist") });
}

TEST_F(SettledFiles, StringTablesAreReadOnceUntilTheyChange)
{
    const std::string table = inBundle("de.lproj/Localizable.strings");
    const auto strings = NSBundle::bundleWithPath(bundle);
    Phone::current().languages = { "de" };
    phone.writePropertyList(table, Dictionary { { "Calls", "Anrufe" } });
    for (const char* key : { "Calls", "Calls", "Messages" })
        strings->localizedStringForKey_value_table(key, "", "");
    EXPECT_EQ(files->takeRead(), Strings { table });
    phone.writePropertyList(table, Dictionary { { "Calls", "Telefonate" } });
    EXPECT_EQ(strings->localizedStringForKey_value_table("Calls", "", ""), "Telefonate");
    EXPECT_EQ(files->takeRead(), Strings { table });
}

TEST_F(SettledFiles, NamedImagesAreReadOnceUntilTheyChange)
{
    const NSBundle images(bundle);
    phone.writeFile(inBundle("Icon@2x.png"), phone.png(58, 58));
    const auto image = UIImage::imageNamed_inBundle("Icon", images);
    EXPECT_EQ(UIImage::imageNamed_inBundle("Icon", images), image);
    EXPECT_EQ(files->takeRead(), Strings { inBundle("Icon@2x.png") });
    phone.writeFile(inBundle("Icon@2x.png"), phone.png(60, 60));
    EXPECT_EQ(UIImage::imageNamed_inBundle("Icon", images)->size(), (CGSize { 30, 30 }));
}

TEST_F(SettledFiles, ImagesByTheirPathAreReadEachTime)
{
    phone.writeFile("/logo.png", phone.png(4, 4));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(UIImage::imageWithContentsOfFile("/logo.png"));
    EXPECT_EQ(files->takeRead(), (Strings { "/logo.png", "/logo.png", "/logo.png" }));
}

} // namespace
