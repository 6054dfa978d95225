#include "Linux/IconThemes.h"

#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace {

class ThemedIcons : public ::testing::Test {
protected:
    void write(const std::string& file, const std::string& content = "picture")
    {
        std::filesystem::create_directories(std::filesystem::path(folder.path(file)).parent_path());
        folder.write(file, content);
    }

    void writeTheme(const std::string& base, const std::string& name, const std::string& more)
    {
        write(base + "/" + name + "/index.theme",
            "[Icon Theme]\nName=x\nDirectories=16,64,scalable,29x2\n" + more
                + "\n[16]\nSize=16\nType=Fixed\n[64]\nSize=64\n[scalable]\nSize=128\nMinSize=96\nMaxSize=512\n"
                  "Type=Scalable\n[29x2]\nSize=29\nScale=2\nType=Fixed\n");
    }

    std::string find(const std::string& icon, const std::string& theme = "hicolor", int size = 29, int scale = 2)
    {
        const std::string file =
            icons.fileOf(QString::fromStdString(icon), QString::fromStdString(theme), size, scale).toStdString();
        return file.empty() ? file : file.substr(folder.path().size() + 1);
    }

    TemporaryDirectory folder;
    IconThemes icons { { QString::fromStdString(folder.path("own")), QString::fromStdString(folder.path("system")) },
        { QString::fromStdString(folder.path("pixmaps")) } };
};

TEST_F(ThemedIcons, NothingInstalled)
{
    EXPECT_EQ(find("app"), "");
}

TEST_F(ThemedIcons, ExactSizeBeforeAllOthers)
{
    writeTheme("system", "hicolor", "");
    for (const char* directory : { "16", "64", "scalable", "29x2" })
        write(std::string("system/hicolor/") + directory + "/app.png");
    EXPECT_EQ(find("app"), "system/hicolor/29x2/app.png");
}

TEST_F(ThemedIcons, NearestSizeAndRatherTooLarge)
{
    writeTheme("system", "hicolor", "");
    write("system/hicolor/16/app.png");
    write("system/hicolor/64/app.png");
    EXPECT_EQ(find("app"), "system/hicolor/64/app.png");
    EXPECT_EQ(find("app", "hicolor", 16, 1), "system/hicolor/16/app.png");
}

TEST_F(ThemedIcons, DrawingWhereThereIsNothingElse)
{
    writeTheme("system", "hicolor", "");
    write("system/hicolor/scalable/app.svg");
    EXPECT_EQ(find("app"), "system/hicolor/scalable/app.svg");
}

TEST_F(ThemedIcons, FolderOfTheUserBeforeThatOfTheSystem)
{
    writeTheme("system", "hicolor", "");
    write("system/hicolor/64/app.png");
    write("own/hicolor/64/app.png");
    EXPECT_EQ(find("app"), "own/hicolor/64/app.png");
}

TEST_F(ThemedIcons, InheritedThemesAndThoseThatInheritThemselves)
{
    writeTheme("system", "Child", "Inherits=Parent,Child");
    writeTheme("system", "Parent", "Inherits=Child,Missing,hicolor");
    writeTheme("system", "hicolor", "");
    write("system/hicolor/64/app.png");
    write("system/Parent/64/other.png");
    EXPECT_EQ(find("app", "Child"), "system/hicolor/64/app.png");
    EXPECT_EQ(find("other", "Child"), "system/Parent/64/other.png");
}

TEST_F(ThemedIcons, ThemeThatInheritsItselfAloneOrWithAnother)
{
    writeTheme("system", "Self", "Inherits=Self");
    writeTheme("system", "A", "Inherits=B");
    writeTheme("system", "B", "Inherits=A");
    EXPECT_EQ(find("app", "Self"), "");
    EXPECT_EQ(find("app", "A"), "");
}

TEST_F(ThemedIcons, InheritedThemeBeforeTheNextOne)
{
    writeTheme("system", "Child", "Inherits=First,Second");
    writeTheme("system", "First", "Inherits=Deep");
    writeTheme("system", "Deep", "");
    writeTheme("system", "Second", "");
    write("system/Second/64/app.png");
    write("system/Deep/64/app.png");
    EXPECT_EQ(find("app", "Child"), "system/Deep/64/app.png");
}

TEST_F(ThemedIcons, ThemeWhoseNameIsAPath)
{
    writeTheme("elsewhere", "Theme", "");
    write("elsewhere/Theme/64/app.png");
    EXPECT_EQ(find("app", "../elsewhere/Theme"), "");
}

TEST_F(ThemedIcons, ThemeThatGrowsWhileWeLook)
{
    writeTheme("system", "hicolor", "");
    EXPECT_EQ(find("app"), "");
    write("system/hicolor/64/app.png");
    const std::filesystem::path theme = folder.path("system/hicolor");
    last_write_time(theme, last_write_time(theme) + std::chrono::seconds(1));
    EXPECT_EQ(find("app"), "system/hicolor/64/app.png");
    // One that comes into a directory that was there is seen without more ado.
    write("system/hicolor/64/other.png");
    EXPECT_EQ(find("other"), "system/hicolor/64/other.png");
}

TEST_F(ThemedIcons, IconsOfNoTheme)
{
    write("pixmaps/app.xpm");
    EXPECT_EQ(find("app"), "pixmaps/app.xpm");
}

TEST_F(ThemedIcons, IndexThatIsRubbish)
{
    write("system/hicolor/index.theme", "[Icon Theme\nDirectories=16\n\xff\n[]\n=\n[16]\nSize=many\nScale=-3\n");
    write("system/hicolor/16/app.png");
    EXPECT_EQ(find("app"), "");
}

} // namespace
