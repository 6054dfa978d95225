#include "Support/PageTest.h"
#include "TDCarrierLogos.h"

#include <fstream>
#include <iterator>

namespace {

constexpr const char* directory = "/var/mobile/Library/Preferences/Tandem";
constexpr const char* placeholder = "/Library/PreferenceBundles/TandemPreferences.bundle/noimage3.png";
constexpr const char* key = "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4";

/// Logos are told apart by their width.
class CarrierLogos : public PageTest {
protected:
    static std::string pathOf(const std::string& name) { return std::string(directory) + "/" + name + ".png"; }
    void put(const std::string& path, int width) { phone.writeFile(path, phone.png(width, 1)); }

    double widthFor(const std::string& carrier)
    {
        const auto image = getImage(carrier, key);
        return image ? image->size().width : 0;
    }

    Strings logOf(const std::string& carrier)
    {
        phone.log->lines.clear();
        getImage(carrier, key);
        return phone.log->lines;
    }

    const std::string firstLine =
        std::string("***** Trying to gett default image first from location '") + directory + "'";
    static std::string secondLine(const std::string& name)
    {
        return "***** Trying get image from cache: " + pathOf(name);
    }
};

TEST_F(CarrierLogos, LookUpOrderIsUserThenCarrierThenPlaceholderThenNone)
{
    EXPECT_EQ(widthFor("Alpha"), 0);
    put(placeholder, 3);
    EXPECT_EQ(widthFor("Alpha"), 3);
    put(pathOf("alpha"), 2);
    EXPECT_EQ(widthFor("Alpha"), 2);
    put(pathOf(key), 1);
    EXPECT_EQ(widthFor("Alpha"), 1);
}

TEST_F(CarrierLogos, UserLogoWritesOneLineEveryOtherLookUpTwo)
{
    EXPECT_EQ(logOf("Alpha"), (Strings { firstLine, secondLine("alpha") }));
    put(placeholder, 3);
    EXPECT_EQ(logOf("Alpha"), (Strings { firstLine, secondLine("alpha") }));
    put(pathOf("alpha"), 2);
    EXPECT_EQ(logOf("Alpha"), (Strings { firstLine, secondLine("alpha") }));
    put(pathOf(key), 1);
    EXPECT_EQ(logOf("Alpha"), Strings { firstLine });
}

TEST_F(CarrierLogos, NameWithoutAsciiLettersReadsTheFileNamedDotPng)
{
    put(std::string(directory) + "/.png", 5);
    for (const char* carrier : { "3", "", "中国移动", "МТС", "2-3 !" }) {
        EXPECT_EQ(widthFor(carrier), 5) << carrier;
        EXPECT_EQ(logOf(carrier), (Strings { firstLine, secondLine("") })) << carrier;
    }
}

TEST_F(CarrierLogos, NamesAreNormalisedToLowerCaseAsciiLetters)
{
    const std::vector<std::pair<const char*, const char*>> names { { "T-Mobile US", "tmobileus" },
        { "tmobileus", "tmobileus" }, { "AT&T", "att" }, { "Vodafone IN", "vodafonein" }, { "Télé2", "tl" },
        { "../../x", "x" }, { "a/b\\c", "abc" } };
    for (const auto& [carrier, name] : names)
        EXPECT_EQ(logOf(carrier), (Strings { firstLine, secondLine(name) })) << carrier;
}

TEST_F(CarrierLogos, FileThatIsNoPictureIsPassedOver)
{
    put(pathOf("alpha"), 2);
    phone.writeFile(pathOf(key), Bytes { 'n', 'o' });
    EXPECT_EQ(widthFor("Alpha"), 2);
    EXPECT_TRUE(hasDefaultImageSetup(key));
}

TEST_F(CarrierLogos, LogosThatAreCutOffArePassedOver)
{
    put(placeholder, 3);
    const Bytes whole = phone.png(20, 20);
    const auto cutOff = [&whole](std::size_t length) {
        return Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    };
    for (std::size_t length = 0; length < whole.size(); ++length) {
        put(pathOf("alpha"), 2);
        phone.writeFile(pathOf(key), cutOff(length));
        EXPECT_EQ(widthFor("Alpha"), 2) << length;
        phone.writeFile(pathOf("alpha"), cutOff(length));
        EXPECT_EQ(widthFor("Alpha"), 3) << length;
        EXPECT_TRUE(hasDefaultImageSetup(key));
    }
}

TEST_F(CarrierLogos, LogoWhosePixelsAreDamagedIsPassedOver)
{
    put(pathOf("alpha"), 2);
    Bytes damaged = phone.png(20, 20);
    // In the middle of the pixels, which are the longest part of the file.
    damaged.at(damaged.size() / 2) ^= 0xFF;
    phone.writeFile(pathOf(key), damaged);
    EXPECT_EQ(widthFor("Alpha"), 2);
    EXPECT_TRUE(hasDefaultImageSetup(key));
}

TEST_F(CarrierLogos, ZeroByteFileCountsAsALogo)
{
    EXPECT_FALSE(hasDefaultImageSetup(key));
    phone.writeFile(pathOf(key), {});
    EXPECT_TRUE(hasDefaultImageSetup(key));
}

TEST_F(CarrierLogos, DirectoryOfThatNameCountsAsALogoAndIsPassedOver)
{
    phone.files->createDirectory(pathOf(key));
    EXPECT_TRUE(hasDefaultImageSetup(key));
    EXPECT_EQ(widthFor("Alpha"), 0);
}

TEST_F(CarrierLogos, SavingMakesTheDirectoryWithItsParentsAndReplacesTheOldLogo)
{
    phone.files->remove("/var/mobile/Library");
    saveImage(key, UIImage::imageWithData(phone.png(8, 6)));
    EXPECT_EQ(phone.log->lines, Strings { "***** Saving image to : " + pathOf(key) });
    EXPECT_EQ(getImageFromPath(pathOf(key))->size(), (CGSize { 8, 6 }));
    saveImage(key, UIImage::imageWithData(phone.png(3, 2)));
    EXPECT_EQ(getImageFromPath(pathOf(key))->size(), (CGSize { 3, 2 }));
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(phone.hostPath(directory)))
        ++files;
    EXPECT_EQ(files, 1U);
}

TEST_F(CarrierLogos, ReaderThatHasTheOldLogoOpenReadsItWhole)
{
    put(pathOf(key), 4);
    const Bytes old = *phone.readFile(pathOf(key));
    std::ifstream reader(phone.hostPath(pathOf(key)), std::ios::binary);
    saveImage(key, UIImage::imageWithData(phone.png(8, 6)));
    EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(reader), {}), old);
    EXPECT_EQ(getImageFromPath(pathOf(key))->size(), (CGSize { 8, 6 }));
}

TEST_F(CarrierLogos, SavedPixelsAreThePickedOnesWithTheirAlpha)
{
    const auto bitmap = std::make_shared<const Bitmap>(Bitmap { 2, 1, { 255, 0, 0, 255, 0, 128, 255, 64 } });
    saveImage(key, UIImage::imageWithBitmap(bitmap, 2));
    const auto saved = getImageFromPath(pathOf(key))->bitmap();
    EXPECT_EQ(saved->width, 2);
    EXPECT_EQ(saved->rgba, bitmap->rgba);
}

TEST_F(CarrierLogos, PlainFileInPlaceOfTheDirectoryMakesTheWriteFailSilently)
{
    phone.writeFile(directory, Bytes { 1 });
    saveImage(key, UIImage::imageWithData(phone.png(8, 6)));
    EXPECT_EQ(phone.log->lines, Strings { "***** Saving image to : " + pathOf(key) });
    EXPECT_EQ(phone.readFile(directory), Bytes { 1 });
}

TEST_F(CarrierLogos, DirectoryThatCannotBeMadeIsLoggedAndNothingIsWritten)
{
    phone.files->remove("/var/mobile/Library");
    phone.writeFile("/var/mobile/Library", Bytes { 1 });
    saveImage(key, UIImage::imageWithData(phone.png(8, 6)));
    EXPECT_EQ(phone.log->lines,
        Strings { std::string("***** Error while creating directory at ") + directory
            + " and error: Error Domain=NSCocoaErrorDomain Code=512 \"“Tandem” couldn’t be created: File "
              "exists.\"" });
}

TEST_F(CarrierLogos, NullImageWritesNothingAndKeepsTheOldLogo)
{
    put(pathOf(key), 4);
    saveImage(key, nullptr);
    EXPECT_EQ(getImageFromPath(pathOf(key))->size().width, 4);
    EXPECT_EQ(phone.log->lines, Strings { "***** Saving image to : " + pathOf(key) });
}

TEST_F(CarrierLogos, KeysThatWouldLeadElsewhereAreNeitherReadNorWritten)
{
    put("/var/mobile/Library/Preferences/outside.png", 4);
    phone.files->createDirectory(directory);
    EXPECT_EQ(getImage("1", "../outside"), nullptr);
    EXPECT_FALSE(hasDefaultImageSetup("../outside"));
    EXPECT_TRUE(removeUserLogo("../outside"));
    saveImage("../outside", UIImage::imageWithData(phone.png(9, 9)));
    EXPECT_EQ(getImageFromPath("/var/mobile/Library/Preferences/outside.png")->size().width, 4);
}

} // namespace
