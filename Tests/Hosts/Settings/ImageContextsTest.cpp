#include "WindowTest.h"

#include "UIKit/UIImage.h"

#include <fstream>

namespace {

constexpr int sims = 30;

} // namespace

/// The page of SIMs leaves an image context open for each logo that it draws.
class ImageContextsTest : public WindowTest {
protected:
    ImageContextsTest()
    {
        Json subscriptions = Json::array();
        for (int i = 0; i < sims; ++i)
            subscriptions.push_back({ { "uuid", "SIM" + std::to_string(i) }, { "carrier", "Alpha" } });
        _phone = _root.path().toStdString() + "/phone.json";
        std::ofstream(_phone) << Json { { "subscriptions", subscriptions } };
    }
};

TEST_F(ImageContextsTest, DoNotGatherWhileAPageIsScrolled)
{
    openWindow();
    openPage("TDSimSettingsController");
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 0U);
    std::size_t open = 0;
    for (int sim = 0; sim < sims; ++sim) {
        ASSERT_TRUE(item(QStringLiteral("SIM+SIM%1").arg(sim)));
        open = std::max(open, UIGraphicsDrainImageContexts());
    }
    EXPECT_EQ(open, 0U);
}
