#include "Desktop/DesktopApps.h"

#include <filesystem>
#include <sys/stat.h>

namespace {

/// What the app's icon is drawn from, told by its colour.
class Icons : public DesktopApps {
protected:
    Icons() { install("app"); }
};

TEST_F(Icons, NothingInstalled)
{
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(Icons, DirectoryForTheScaleBeforeAllOthers)
{
    writeTheme("hicolor", "16,64,29@2x,scalable");
    for (const char* directory : { "16", "64", "scalable" })
        writePicture(std::string("system/icons/hicolor/") + directory + "/app.png", "red");
    writePicture("system/icons/hicolor/29@2x/app.png", "blue", 58, 58);
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, NearestSize)
{
    writeTheme("hicolor", "16,32,512");
    writePicture("system/icons/hicolor/16/app.png", "red", 16, 16);
    writePicture("system/icons/hicolor/32/app.png", "blue", 32, 32);
    writePicture("system/icons/hicolor/512/app.png", "lime", 512, 512);
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, DrawingOfAllDesktops)
{
    writeTheme("Chosen", "64");
    writeTheme("hicolor", "scalable");
    writeDrawing("system/icons/hicolor/scalable/app.svg", "blue");
    theme = "Chosen";
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, FolderOfTheUserBeforeThatOfTheSystem)
{
    writeTheme("hicolor", "64");
    writePicture("system/icons/hicolor/64/app.png", "red");
    EXPECT_EQ(shown(), "red");
    writePicture("own/icons/hicolor/64/app.png", "blue");
    EXPECT_EQ(shown(), "blue");
    writeTheme("Chosen", "scalable", "Inherits=hicolor", "own");
    writeDrawing("system/icons/Chosen/scalable/app.svg", "red");
    writeDrawing("own/icons/Chosen/scalable/app.svg", "lime");
    theme = "Chosen";
    EXPECT_EQ(shown(), "lime");
}

TEST_F(Icons, ChosenThemeBeforeTheOneOfAllDesktops)
{
    writeTheme("Chosen", "64");
    writeTheme("hicolor", "64");
    writePicture("system/icons/Chosen/64/app.png", "blue");
    EXPECT_EQ(shown(), "neutral");
    writePicture("system/icons/hicolor/64/app.png", "red");
    EXPECT_EQ(shown(), "red");
    theme = "Chosen";
    EXPECT_EQ(shown(), "blue");
    theme = "Missing";
    EXPECT_EQ(shown(), "red");
    theme = "";
    EXPECT_EQ(shown(), "red");
}

TEST_F(Icons, InheritedTheme)
{
    writeTheme("Chosen", "64", "Inherits=Parent,Missing");
    writeTheme("Parent", "64");
    writeTheme("hicolor", "64");
    writePicture("system/icons/Parent/64/app.png", "blue");
    writePicture("system/icons/hicolor/64/app.png", "red");
    theme = "Chosen";
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, InheritedThemeAndWhatItInheritsBeforeTheNextOne)
{
    writeTheme("Chosen", "64", "Inherits=First,Second");
    writeTheme("First", "64", "Inherits=Deep");
    writeTheme("Deep", "64");
    writeTheme("Second", "64");
    writePicture("system/icons/Deep/64/app.png", "blue");
    writePicture("system/icons/Second/64/app.png", "red");
    theme = "Chosen";
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, ThemesThatInheritThemselves)
{
    writeTheme("Self", "64", "Inherits=Self");
    writeTheme("A", "64", "Inherits=B");
    writeTheme("B", "64", "Inherits=A");
    for (const char* name : { "Self", "A" }) {
        theme = name;
        EXPECT_EQ(shown(), "neutral") << name;
    }
    writePicture("system/icons/B/64/app.png", "blue");
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, ThemeWhoseNameIsAPath)
{
    writeTheme("../elsewhere", "64");
    writePicture("system/icons/../elsewhere/64/app.png", "red");
    theme = "../elsewhere";
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(Icons, IndexThatIsRubbish)
{
    write("system/icons/hicolor/index.theme", "\xff\xfe[]\n=\n[16]\nSize=many\nScale=-3\n");
    writePicture("system/icons/hicolor/16/app.png", "red");
    EXPECT_EQ(shown(), "neutral");
    writePicture("system/pixmaps/app.png", "blue");
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, IconsOfNoTheme)
{
    writePicture("system/pixmaps/app.png", "red");
    EXPECT_EQ(shown(), "red");
    write("system/pixmaps/app.png", "no picture");
    write("system/pixmaps/app.xpm", "/* XPM */\nstatic char* x[] = {\n\"1 1 1 1\",\n\"a c #0000ff\",\n\"a\"};\n");
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, IconThatIsInstalledLater)
{
    writeTheme("hicolor", "64,128");
    std::filesystem::create_directories(folder.path("system/icons/hicolor/64"));
    EXPECT_EQ(shown(), "neutral");
    // One that comes into a directory that was there is seen without more ado.
    writePicture("system/icons/hicolor/64/app.png", "red", 16, 16);
    EXPECT_EQ(shown(), "red");
    std::filesystem::remove(folder.path("system/icons/hicolor/64/app.png"));
    EXPECT_EQ(shown(), "neutral");
    writePicture("system/icons/hicolor/128/app.png", "blue", 128, 128);
    touch("system/icons/hicolor");
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, ThemeThatIsInstalledLater)
{
    theme = "Chosen";
    EXPECT_EQ(shown(), "neutral");
    writeTheme("Chosen", "64");
    writePicture("system/icons/Chosen/64/app.png", "red");
    EXPECT_EQ(shown(), "red");
}

TEST_F(Icons, PictureThatIsReplaced)
{
    writeTheme("hicolor", "64");
    writePicture("system/icons/hicolor/64/app.png", "red");
    EXPECT_EQ(shown(), "red");
    writePicture("system/icons/hicolor/64/app.png", "blue");
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, TornPictures)
{
    writePicture("system/pixmaps/app.png", "red");
    const std::string whole = folder.read("system/pixmaps/app.png");
    for (const std::size_t length : { std::size_t { 0 }, std::size_t { 8 }, std::size_t { 40 }, whole.size() - 1 }) {
        write("system/pixmaps/app.png", whole.substr(0, length));
        EXPECT_EQ(shown(), "neutral") << length;
    }
    std::filesystem::remove(folder.path("system/pixmaps/app.png"));
    write("system/pixmaps/app.svg", "<svg xmlns='http://www.w3.org/2000/svg'><rect");
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(Icons, PicturesTooLargeForAnIcon)
{
    writePicture("system/pixmaps/app.png", "red", 2048, 256);
    EXPECT_EQ(shown(), "red");
    writePicture("system/pixmaps/app.png", "red", 2049, 256);
    EXPECT_EQ(shown(), "neutral");
    writePicture("system/pixmaps/app.png", "red");
    const std::string picture = folder.read("system/pixmaps/app.png");
    write("system/pixmaps/app.png", picture + std::string((4 << 20) - picture.size(), ' '));
    EXPECT_EQ(shown(), "red");
    write("system/pixmaps/app.png", picture + std::string((4 << 20) - picture.size() + 1, ' '));
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(Icons, PipeInThePlaceOfAPicture)
{
    std::filesystem::create_directories(folder.path("system/pixmaps"));
    ASSERT_EQ(mkfifo(folder.path("system/pixmaps/app.png").c_str(), 0600), 0);
    install(folder.path("system/pixmaps/app.png"));
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(Icons, LongDrawing)
{
    writeTheme("hicolor", "scalable");
    writeDrawing("system/icons/hicolor/scalable/app.svg", "red");
    const std::string drawing = folder.read("system/icons/hicolor/scalable/app.svg");
    write("system/icons/hicolor/scalable/app.svg", drawing + std::string((31 << 10) - drawing.size(), '\n'));
    EXPECT_EQ(shown(), "red");
    write("system/icons/hicolor/scalable/app.svg", drawing + std::string((32 << 10) - drawing.size(), '\n'));
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(Icons, DrawingThatIsTooMuchWorkBesideAPicture)
{
    writeTheme("hicolor", "64,scalable");
    write("system/icons/hicolor/scalable/app.svg",
        "<!DOCTYPE svg [<!ENTITY a 'x'>]><svg xmlns='http://www.w3.org/2000/svg'/>");
    EXPECT_EQ(shown(), "neutral");
    writePicture("system/icons/hicolor/64/app.png", "blue");
    EXPECT_EQ(shown(), "blue");
}

TEST_F(Icons, DrawingOfAMillionPixels)
{
    writeTheme("hicolor", "scalable");
    write("system/icons/hicolor/scalable/app.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='1000000' height='1000000'>"
        "<rect width='1000000' height='1000000' fill='blue'/></svg>");
    EXPECT_EQ(shown(), "blue");
}

/// QIcon takes the icon of a shorter name where the whole name is missing, so that one is looked at, too.
TEST_F(Icons, IconOfAShorterName)
{
    install("app-of-the-maker");
    writeTheme("hicolor", "64,scalable");
    writePicture("system/icons/hicolor/64/app.png", "red");
    EXPECT_EQ(shown(), "red");
    std::filesystem::remove(folder.path("system/icons/hicolor/64/app.png"));
    write("system/icons/hicolor/scalable/app.svg",
        "<!DOCTYPE svg [<!ENTITY a 'x'>]><svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
        "<rect width='9' height='9' fill='blue'/></svg>");
    EXPECT_EQ(shown(), "neutral");
}

} // namespace
