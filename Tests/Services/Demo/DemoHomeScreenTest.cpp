#include "DemoFolder.h"
#include "Foundation/NSKeyedArchiver.h"
#include "Pictures/ModuleImages.h"
#include "Storage/StoredPropertyLists.h"
#include "UIKit/UIImage.h"

namespace {

constexpr const char* service = "com.vexil.tandem";
constexpr const char* iconMessage = "com.vexil.tandem.app.icon";
constexpr const char* messageData = "TDServiceMessageData";
constexpr const char* app = "org.example.App";

/// Red and half-transparent blue beside each other.
const Bitmap picture { 2, 1, { 255, 0, 0, 255, 0, 0, 255, 128 } };

class DemoHomeScreenIcons : public DemoFolder {
protected:
    DemoHomeScreenIcons()
    {
        install(R"({"scale": 2, "homeScreen": {"org.example.App": "app.png", "org.example.Bare": null}})");
    }

    void install(const std::string& text)
    {
        Phone phone = open(text)->phone();
        phone.propertyLists = std::make_shared<StoredPropertyLists>();
        phone.images = std::make_shared<ModuleImages>();
        Phone::setCurrent(phone);
    }

    void writePicture(const std::string& name) const
    {
        const Bytes png = *Phone::current().images->encodePng(picture);
        write(name, std::string(png.begin(), png.end()));
    }

    static Value ask(const Value& data)
    {
        return Phone::current().homeScreen->ask(service, iconMessage, Dictionary { { messageData, data } });
    }

    static std::shared_ptr<UIImage> iconIn(const Value& reply)
    {
        const auto* archive = reply[messageData].data();
        return archive ? NSKeyedUnarchiver::unarchiveObjectWithData(*archive).as<UIImage>() : nullptr;
    }
};

} // namespace

TEST_F(DemoHomeScreenIcons, KnownApp)
{
    writePicture("app.png");
    const Value reply = ask(app);
    ASSERT_TRUE(reply.dictionary());
    EXPECT_EQ(reply.dictionary()->size(), 1U);
    const auto icon = iconIn(reply);
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->scale(), 2);
    EXPECT_EQ(icon->size().width, 1);
    EXPECT_EQ(icon->size().height, 0.5);
    ASSERT_TRUE(icon->bitmap());
    EXPECT_EQ(icon->bitmap()->rgba, picture.rgba);
}

TEST_F(DemoHomeScreenIcons, PictureIsReadWhenItIsAskedFor)
{
    EXPECT_TRUE(ask(app).isNull());
    writePicture("app.png");
    EXPECT_TRUE(iconIn(ask(app)));
    std::filesystem::remove(path("app.png"));
    EXPECT_TRUE(ask(app).isNull());
}

TEST_F(DemoHomeScreenIcons, UnknownApp)
{
    writePicture("app.png");
    EXPECT_TRUE(ask("org.example.Other").isNull());
    EXPECT_TRUE(ask("").isNull());
    EXPECT_TRUE(ask("ORG.EXAMPLE.APP").isNull());
}

TEST_F(DemoHomeScreenIcons, AppWithoutPicture)
{
    EXPECT_TRUE(ask("org.example.Bare").isNull());
}

TEST_F(DemoHomeScreenIcons, RequestWithoutApp)
{
    EXPECT_TRUE(ask({}).isNull());
    EXPECT_TRUE(ask(3).isNull());
    EXPECT_TRUE(ask(Array { app }).isNull());
    EXPECT_TRUE(Phone::current().homeScreen->ask(service, iconMessage, {}).isNull());
    EXPECT_TRUE(Phone::current().homeScreen->ask(service, iconMessage, app).isNull());
}

TEST_F(DemoHomeScreenIcons, OtherServiceOrMessage)
{
    writePicture("app.png");
    const Value request = Dictionary { { messageData, app } };
    EXPECT_TRUE(Phone::current().homeScreen->ask("com.vexil.other", iconMessage, request).isNull());
    EXPECT_TRUE(Phone::current().homeScreen->ask(service, "com.vexil.tandem.app.name", request).isNull());
    EXPECT_TRUE(Phone::current().homeScreen->ask("", "", request).isNull());
}

TEST_F(DemoHomeScreenIcons, UnreadablePicture)
{
    write("app.png", "no picture");
    EXPECT_TRUE(ask(app).isNull());
    write("app.png", "");
    EXPECT_TRUE(ask(app).isNull());
    std::filesystem::remove(path("app.png"));
    std::filesystem::create_directory(path("app.png"));
    EXPECT_TRUE(ask(app).isNull());
}

TEST_F(DemoHomeScreenIcons, TornPicture)
{
    const Bytes png = *Phone::current().images->encodePng(picture);
    write("app.png", std::string(png.begin(), png.begin() + 40));
    EXPECT_TRUE(ask(app).isNull());
}

TEST_F(DemoHomeScreenIcons, PhoneThatShowsNoPictures)
{
    writePicture("app.png");
    Phone phone = Phone::current();
    phone.images = nullptr;
    Phone::setCurrent(phone);
    EXPECT_TRUE(ask(app).isNull());
}
