#include "Linux/DesktopHomeScreen.h"

#include "Common/LibplistPropertyLists.h"
#include "Common/QtImages.h"
#include "Foundation/NSKeyedArchiver.h"
#include "Phone/Phone.h"
#include "TemporaryDirectory.h"
#include "UIKit/UIImage.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

class DesktopEntries : public ::testing::Test {
protected:
    DesktopEntries()
    {
        Phone phone;
        phone.propertyLists = std::make_shared<LibplistPropertyLists>();
        phone.images = std::make_shared<QtImages>();
        phone.screenScale = 2;
        Phone::setCurrent(std::move(phone));
    }
    ~DesktopEntries() override { Phone::setCurrent({}); }

    void write(const std::string& file, const std::string& content)
    {
        std::filesystem::create_directories(std::filesystem::path(folder.path(file)).parent_path());
        folder.write(file, content);
    }

    void writePicture(const std::string& file, int width, int height)
    {
        const Bitmap bitmap { width, height, Bytes(static_cast<std::size_t>(width) * height * 4, 0xFF) };
        const Bytes png = QtImages().encodePng(bitmap).value_or(Bytes());
        write(file, std::string(png.begin(), png.end()));
    }

    Value ask(const Value& app, const char* message = "com.vexil.tandem.app.icon")
    {
        DesktopHomeScreen screen({ QString::fromStdString(folder.path("own")), QString::fromStdString(folder.path()) });
        return screen.ask("com.vexil.tandem", message, Dictionary { { "TDServiceMessageData", app } });
    }

    std::shared_ptr<UIImage> iconOf(const std::string& app)
    {
        const Value reply = ask(app);
        const auto* archive = reply["TDServiceMessageData"].data();
        return archive ? NSKeyedUnarchiver::unarchiveObjectWithData(*archive).as<UIImage>() : nullptr;
    }

    TemporaryDirectory folder;
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

TEST_F(DesktopEntries, OtherMessagesHaveNoAnswer)
{
    write("applications/a.desktop", "[Desktop Entry]\nIcon=app\n");
    writePicture("pixmaps/app.png", 58, 58);
    EXPECT_TRUE(ask("a", "com.vexil.tandem.other").isNull());
    EXPECT_FALSE(ask("a").isNull());
}

} // namespace
