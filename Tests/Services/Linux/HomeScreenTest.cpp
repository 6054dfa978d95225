#include "Linux/DesktopHomeScreen.h"

#include "Foundation/NSKeyedArchiver.h"
#include "Phone/Phone.h"
#include "Pictures/ModuleImages.h"
#include "Storage/LibplistPropertyLists.h"
#include "TemporaryDirectory.h"
#include "UIKit/UIImage.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <utility>

namespace {

class DesktopEntries : public ::testing::Test {
protected:
    DesktopEntries()
    {
        Phone phone;
        phone.propertyLists = std::make_shared<LibplistPropertyLists>();
        phone.images = std::make_shared<ModuleImages>();
        phone.screenScale = 2;
        Phone::setCurrent(std::move(phone));
    }
    ~DesktopEntries() override { Phone::setCurrent({}); }

    void write(const std::string& file, const std::string& content)
    {
        std::filesystem::create_directories(std::filesystem::path(folder.path(file)).parent_path());
        folder.write(file, content);
        // Files that are written one right after the other are told apart.
        std::filesystem::last_write_time(folder.path(file), _time += std::chrono::seconds(1));
    }

    void writePicture(const std::string& file, int width, int height)
    {
        const Bitmap bitmap { width, height, Bytes(static_cast<std::size_t>(width) * height * 4, 0xFF) };
        const Bytes png = ModuleImages().encodePng(bitmap).value_or(Bytes());
        write(file, std::string(png.begin(), png.end()));
    }

    Value ask(const Value& app, const char* message = "com.vexil.tandem.app.icon")
    {
        return screen.ask("com.vexil.tandem", message, Dictionary { { "TDServiceMessageData", app } });
    }

    std::shared_ptr<UIImage> iconOf(const std::string& app)
    {
        const Value reply = ask(app);
        const auto* archive = reply["TDServiceMessageData"].data();
        return archive ? NSKeyedUnarchiver::unarchiveObjectWithData(*archive).as<UIImage>() : nullptr;
    }

    int opaqueRowsOf(const std::string& app)
    {
        const auto icon = iconOf(app);
        const auto bitmap = icon ? icon->bitmap() : nullptr;
        int rows = 0;
        for (int row = 0; bitmap && row < bitmap->height; ++row)
            rows += bitmap->rgba[static_cast<std::size_t>(row) * bitmap->width * 4 + 3] == 0xFF ? 1 : 0;
        return rows;
    }

    /// As who installs something in the folder does.
    void touch(const std::string& name)
    {
        const std::filesystem::path path = folder.path(name);
        last_write_time(path, last_write_time(path) + std::chrono::seconds(1));
    }

    TemporaryDirectory folder;
    QString theme;
    std::shared_ptr<WaitBudget> budget = std::make_shared<WaitBudget>();
    DesktopHomeScreen screen { { QString::fromStdString(folder.path("own")), QString::fromStdString(folder.path()) },
        [this] { return theme; }, budget };

private:
    std::filesystem::file_time_type _time = std::filesystem::file_time_type::clock::now();
};

TEST_F(DesktopEntries, AppThatIsNotInstalled)
{
    EXPECT_TRUE(ask("org.example.App").isNull());
    EXPECT_TRUE(ask("../applications/x").isNull());
    EXPECT_TRUE(ask("").isNull());
    EXPECT_TRUE(ask(5).isNull());
}

TEST_F(DesktopEntries, IconIsTwentyNinePointsAtTheScreensScale)
{
    write("applications/org.example.App.desktop", "# x\n[Desktop Entry]\nIcon=app\nIcon=second\n[Other]\nIcon=no\n");
    writePicture("pixmaps/app.png", 200, 100);
    for (const double scale : { 1.0, 2.0, 3.0 }) {
        Phone::current().screenScale = scale;
        const auto icon = iconOf("org.example.App");
        ASSERT_TRUE(icon);
        EXPECT_EQ(icon->size(), (CGSize { 29, 29 }));
        ASSERT_TRUE(icon->bitmap());
        EXPECT_EQ(icon->bitmap()->width, 29 * scale);
        // A picture that is not square is not stretched.
        EXPECT_EQ(icon->bitmap()->rgba[3], 0);
        EXPECT_EQ(icon->bitmap()->rgba[icon->bitmap()->rgba.size() / 2 + 3], 0xFF);
    }
}

TEST_F(DesktopEntries, EntryOfTheUserBeforeThatOfTheSystem)
{
    write("applications/org.example.App.desktop", "[Desktop Entry]\nIcon=app\n");
    write("own/applications/org.example.App.desktop", "[Desktop Entry]\nName=No icon\n");
    writePicture("pixmaps/app.png", 58, 58);
    EXPECT_FALSE(iconOf("org.example.App"));
}

TEST_F(DesktopEntries, IconThatIsAFile)
{
    writePicture("here.png", 10, 10);
    write("applications/a.desktop", "[Desktop Entry]\nIcon=" + folder.path("here.png") + "\n");
    write("applications/b.desktop", "[Desktop Entry]\nIcon=" + folder.path("missing.png") + "\n");
    write("applications/c.desktop", "[Desktop Entry]\nIcon=../here\n");
    EXPECT_TRUE(iconOf("a"));
    EXPECT_FALSE(iconOf("b"));
    EXPECT_FALSE(iconOf("c"));
}

TEST_F(DesktopEntries, IconThatIsNoPicture)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    write("pixmaps/app.png", "no picture");
    EXPECT_FALSE(iconOf("a"));
}

TEST_F(DesktopEntries, ChosenThemeBeforeTheOneOfAllDesktops)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    write("icons/Chosen/index.theme", "[Icon Theme]\nDirectories=64\n[64]\nSize=64\n");
    write("icons/hicolor/index.theme", "[Icon Theme]\nDirectories=64\n[64]\nSize=64\n");
    writePicture("icons/Chosen/64/app.png", 64, 64);
    EXPECT_FALSE(iconOf("a"));
    theme = QStringLiteral("Chosen");
    EXPECT_TRUE(iconOf("a"));
    theme = QStringLiteral("Missing");
    EXPECT_FALSE(iconOf("a"));
    writePicture("icons/hicolor/64/app.png", 64, 64);
    touch("icons/hicolor");
    EXPECT_TRUE(iconOf("a"));
}

TEST_F(DesktopEntries, DrawingIsDrawnAtTheSizeThatIsShown)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    write("icons/hicolor/index.theme", "[Icon Theme]\nDirectories=scalable\n[scalable]\nSize=64\nType=Scalable\n");
    // Its upper half is red, the rest is empty; drawn small and stretched, the edge would be blurred.
    write("icons/hicolor/scalable/app.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'>"
        "<rect width='8' height='4' fill='#ff0000'/></svg>");
    const auto icon = iconOf("a");
    ASSERT_TRUE(icon && icon->bitmap());
    const Bitmap& bitmap = *icon->bitmap();
    ASSERT_EQ(std::pair(bitmap.width, bitmap.height), std::pair(58, 58));
    Bytes expected;
    for (int i = 0; i < 58 * 58; ++i) {
        const std::uint8_t ink = i < 29 * 58 ? 0xFF : 0;
        expected.insert(expected.end(), { ink, 0, 0, ink });
    }
    EXPECT_EQ(bitmap.rgba, expected);
}

TEST_F(DesktopEntries, TornPictures)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    writePicture("pixmaps/app.png", 58, 58);
    const std::string whole = folder.read("pixmaps/app.png");
    for (const std::size_t length : { 1U, 8U, 20U, 40U }) {
        write("pixmaps/app.png", whole.substr(0, length));
        EXPECT_FALSE(iconOf("a")) << length;
    }
    write("pixmaps/app.png", "<svg xmlns='http://www.w3.org/2000/svg'><rect");
    EXPECT_FALSE(iconOf("a"));
    write("pixmaps/app.png", whole);
    EXPECT_TRUE(iconOf("a"));
}

TEST_F(DesktopEntries, PicturesTooLargeForAnIcon)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    writePicture("pixmaps/app.png", 2048, 1);
    EXPECT_TRUE(iconOf("a"));
    writePicture("pixmaps/app.png", 2049, 1);
    EXPECT_FALSE(iconOf("a"));
    const std::string drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>";
    write("pixmaps/app.png", drawing + "</svg>");
    EXPECT_TRUE(iconOf("a"));
    write("pixmaps/app.png", drawing + std::string(1 << 20, ' ') + "</svg>");
    EXPECT_FALSE(iconOf("a"));
    write("pixmaps/app.png", "<svg xmlns='http://www.w3.org/2000/svg' width='1000000' height='1000000'></svg>");
    EXPECT_TRUE(iconOf("a"));
}

TEST_F(DesktopEntries, IconsAreLeftOutWhenThePageHasWaitedLongEnough)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    writePicture("pixmaps/app.png", 58, 58);
    budget->spend(WaitBudget::whole);
    EXPECT_FALSE(iconOf("a"));
    budget->renew();
    EXPECT_TRUE(iconOf("a"));
    EXPECT_LT(budget->patience(), WaitBudget().patience());
}

TEST_F(DesktopEntries, WaitingForTheThemeIsNotCountedTwice)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    writePicture("pixmaps/app.png", 58, 58);
    // A portal counts by itself what it keeps waiting.
    DesktopHomeScreen slow { { QString::fromStdString(folder.path()) },
        [] {
            std::this_thread::sleep_for(WaitBudget::whole);
            return QString();
        },
        budget };
    EXPECT_FALSE(
        slow.ask("com.vexil.tandem", "com.vexil.tandem.app.icon", Dictionary { { "TDServiceMessageData", "a" } })
            .isNull());
    EXPECT_GT(budget->patience().count(), 0);
    EXPECT_LT(budget->patience(), WaitBudget().patience());
}

TEST_F(DesktopEntries, PictureThatIsReplaced)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    writePicture("pixmaps/app.png", 58, 58);
    EXPECT_EQ(opaqueRowsOf("a"), 58);
    writePicture("pixmaps/app.png", 58, 29);
    EXPECT_EQ(opaqueRowsOf("a"), 29);
}

TEST_F(DesktopEntries, OtherMessagesHaveNoAnswer)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    writePicture("pixmaps/app.png", 58, 58);
    EXPECT_TRUE(ask("a", "com.vexil.tandem.other").isNull());
    EXPECT_FALSE(ask("a").isNull());
}

} // namespace
