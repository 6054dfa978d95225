#include "Desktop/DesktopApps.h"
#include "Phone/Phone.h"

#include <utility>

namespace {

class HomeScreens : public DesktopApps { };

TEST_F(HomeScreens, EveryAppHasAnIconOfTheSameSize)
{
    install("app");
    writePicture("system/pixmaps/app.png", "red", 200, 100);
    for (const char* name : { app, "org.example.NotInstalled" }) {
        const auto icon = iconOf(name);
        ASSERT_TRUE(icon);
        EXPECT_EQ(icon->size(), (CGSize { 29, 29 })) << name;
        EXPECT_EQ(icon->scale(), 2) << name;
    }
}

TEST_F(HomeScreens, NamesThatAreNoAppsHaveNoIcon)
{
    for (const Value& name : { Value("../applications/x"), Value(""), Value(".hidden"), Value(5), Value() })
        EXPECT_TRUE(ask(name).isNull());
}

TEST_F(HomeScreens, OtherMessagesHaveNoAnswer)
{
    EXPECT_FALSE(ask(app).isNull());
    EXPECT_TRUE(ask(app, "com.vexil.tandem.other").isNull());
    EXPECT_TRUE(
        screen.ask("com.vexil.other", "com.vexil.tandem.app.icon", Dictionary { { "TDServiceMessageData", app } })
            .isNull());
}

TEST_F(HomeScreens, IconIsLookedUpWhenItIsDrawn)
{
    const auto icon = iconOf(app);
    install("app");
    writePicture("system/pixmaps/app.png", "red");
    ASSERT_TRUE(icon && icon->bitmap());
    EXPECT_EQ(icon->bitmap()->rgba.at(0), 255);
    // One that was drawn stays as it was drawn.
    writePicture("system/pixmaps/app.png", "blue");
    EXPECT_EQ(icon->bitmap()->rgba.at(0), 255);
    EXPECT_EQ(shown(), "blue");
}

TEST_F(HomeScreens, IconFillsItsSquareAtTheScreensScale)
{
    install("app");
    writePicture("system/pixmaps/app.png", "red", 200, 100);
    for (const double scale : { 1.0, 2.0, 2.75, 3.0 }) {
        Phone::current().screenScale = scale;
        const auto icon = iconOf(app);
        ASSERT_TRUE(icon && icon->bitmap()) << scale;
        const Bitmap& bitmap = *icon->bitmap();
        EXPECT_EQ((std::pair(bitmap.width, bitmap.height)), (std::pair(bitmap.width, bitmap.width))) << scale;
        EXPECT_NEAR(bitmap.width, 29 * scale, 0.5);
        // A picture that is not square is not stretched.
        EXPECT_EQ(bitmap.rgba[3], 0) << scale;
        EXPECT_EQ(shown(), "red") << scale;
    }
}

TEST_F(HomeScreens, SmallPictureIsEnlarged)
{
    install("app");
    writePicture("system/pixmaps/app.png", "red", 10, 10);
    const auto icon = iconOf(app);
    ASSERT_TRUE(icon && icon->bitmap());
    EXPECT_EQ(Bytes(icon->bitmap()->rgba.begin(), icon->bitmap()->rgba.begin() + 4), (Bytes { 255, 0, 0, 255 }));
}

TEST_F(HomeScreens, DrawingIsDrawnAtTheSizeThatIsShown)
{
    install("app");
    writeTheme("hicolor", "scalable");
    // Its upper half is red, the rest is empty; drawn small and stretched, the edge would be blurred.
    write("system/icons/hicolor/scalable/app.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'>"
        "<rect width='8' height='4' fill='#ff0000'/></svg>");
    const auto icon = iconOf(app);
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

TEST_F(HomeScreens, EntryOfTheUserBeforeThatOfTheSystem)
{
    writePicture("system/pixmaps/app.png", "red");
    writePicture("system/pixmaps/other.png", "blue");
    install("app");
    EXPECT_EQ(shown(), "red");
    install("other", "own");
    EXPECT_EQ(shown(), "blue");
    // So the user takes an app away that the system has.
    write(std::string("own/applications/") + app + ".desktop", "[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(HomeScreens, AppThatIsNotInstalledOrHasNoIcon)
{
    EXPECT_EQ(shown(), "neutral");
    write(std::string("system/applications/") + app + ".desktop", "[Desktop Entry]\nType=Application\nName=App\n");
    EXPECT_EQ(shown(), "neutral");
    write(std::string("system/applications/") + app + ".desktop", "no entry");
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(HomeScreens, IconThatIsAFile)
{
    writePicture("here.png", "red", 10, 10);
    install(folder.path("here.png"));
    EXPECT_EQ(shown(), "red");
    install(folder.path("missing.png"));
    EXPECT_EQ(shown(), "neutral");
    install("../here");
    EXPECT_EQ(shown(), "neutral");
}

TEST_F(HomeScreens, PhoneWithoutIconsOfApps)
{
    Phone::current().appIcons = nullptr;
    EXPECT_TRUE(ask(app).isNull());
}

} // namespace
