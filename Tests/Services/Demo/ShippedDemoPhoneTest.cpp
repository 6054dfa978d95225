#include "DemoFolder.h"
#include "Foundation/NSKeyedArchiver.h"
#include "Pictures/ModuleImages.h"
#include "Storage/StoredPropertyLists.h"
#include "UIKit/UIImage.h"

#include <fstream>
#include <iterator>

namespace {

constexpr const char* demoFile = TANDEM_DEMO_PHONE "/demo.json";
constexpr const char* bundle = TANDEM_BUNDLE;
constexpr const char* messageData = "TDServiceMessageData";
constexpr double iconSize = 29;
constexpr std::size_t uuidLength = 36;

Bytes contentOf(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

/// The phone that comes with the product.
class ShippedDemoPhone : public testing::Test {
public:
    ShippedDemoPhone()
    {
        auto opened = DemoPhone::open(demoFile);
        EXPECT_TRUE(opened) << opened.failure().text;
        demo = std::move(*opened);
        Phone phone = demo->phone();
        phone.propertyLists = std::make_shared<StoredPropertyLists>();
        phone.images = std::make_shared<ModuleImages>();
        Phone::setCurrent(phone);
    }
    ~ShippedDemoPhone() override { Phone::setCurrent({}); }

protected:
    static std::vector<std::string> appsOfPage(const std::string& page)
    {
        const auto file = StoredPropertyLists().read(contentOf(std::string(bundle) + "/" + page + ".plist"));
        const auto* items = file ? (*file)["items"].array() : nullptr;
        std::vector<std::string> apps;
        for (const Value& item : items ? *items : Array()) {
            if (const auto* app = item["bundleIdentifier"].string())
                apps.push_back(*app);
        }
        return apps;
    }

    static std::shared_ptr<UIImage> iconOf(const std::string& app)
    {
        const Value reply = Phone::current().homeScreen->ask(
            "com.vexil.tandem", "com.vexil.tandem.app.icon", Dictionary { { messageData, app } });
        const auto* archive = reply[messageData].data();
        return archive ? NSKeyedUnarchiver::unarchiveObjectWithData(*archive).as<UIImage>() : nullptr;
    }

    std::unique_ptr<DemoPhone> demo;
};

} // namespace

TEST_F(ShippedDemoPhone, TwoSimsOfWhichOneIsTheDefaultLine)
{
    const auto sims = Phone::current().subscriptions->subscriptions();
    ASSERT_EQ(sims.size(), 2U);
    EXPECT_NE(sims[0].uuid, sims[1].uuid);
    EXPECT_NE(sims[0].userDefaultVoice, sims[1].userDefaultVoice);
    for (const Subscription& sim : sims) {
        EXPECT_EQ(sim.uuid.size(), uuidLength);
        EXPECT_EQ(sim.uuid.find_first_not_of("0123456789ABCDEF-"), std::string::npos);
        EXPECT_TRUE(sim.label && sim.carrier && sim.phoneNumber);
    }
}

TEST_F(ShippedDemoPhone, ThreeDevices)
{
    EXPECT_EQ(Phone::current().pairedDevices->devices().size(), 3U);
}

TEST_F(ShippedDemoPhone, IconForEveryAppOfThePages)
{
    for (const char* page : { "Root", "Calls", "Messages" }) {
        const auto apps = appsOfPage(page);
        EXPECT_FALSE(apps.empty()) << page;
        for (const std::string& app : apps) {
            const auto icon = iconOf(app);
            ASSERT_TRUE(icon) << app;
            EXPECT_EQ(icon->size().width, iconSize) << app;
            EXPECT_EQ(icon->size().height, iconSize) << app;
        }
    }
}

TEST_F(ShippedDemoPhone, PhotosArePictures)
{
    EXPECT_FALSE(demo->photos().empty());
    for (const std::string& photo : demo->photos())
        EXPECT_TRUE(Phone::current().images->decode(contentOf(photo))) << photo;
}
