#include "SameStepsTest.h"

#include <QTest>

/// The ways back from a page that are not on it. The back button itself: EveryControlTest.
class BackTest : public SameStepsTest, public testing::WithParamInterface<const char*> {
protected:
    void open()
    {
        begin();
        step(
            "open", [this] { item(GetParam())->activate(); }, tapRequest(GetParam()));
        ASSERT_FALSE(page().isFirst());
    }
    void leave(const std::function<void()>& work)
    {
        step("back", work, { { "do", "back" } });
        EXPECT_TRUE(page().isFirst());
    }
    void swipe(int to)
    {
        const QPoint edge(5, 300);
        QTest::touchEvent(_window.get(), touchScreen()).press(0, edge, _window.get());
        for (int x = edge.x(); x <= to; x += 15) {
            QTest::touchEvent(_window.get(), touchScreen()).move(0, { x, edge.y() }, _window.get());
            showFrames();
        }
        // Held still, so that it is the way that decides and not the speed.
        for (int i = 0; i < 10; ++i) {
            QTest::touchEvent(_window.get(), touchScreen()).move(0, { to, edge.y() + i % 2 }, _window.get());
            showFrames();
        }
        QTest::touchEvent(_window.get(), touchScreen()).release(0, { to, edge.y() }, _window.get());
    }
};

TEST_P(BackTest, Escape)
{
    open();
    leave([this] { QTest::keyClick(_window.get(), Qt::Key_Escape); });
}

TEST_P(BackTest, AltLeft)
{
    open();
    leave([this] { QTest::keyClick(_window.get(), Qt::Key_Left, Qt::AltModifier); });
}

TEST_P(BackTest, SwipeFromTheEdge)
{
    open();
    leave([this] { swipe(300); });
}

TEST_P(BackTest, SwipeThatIsTakenBack)
{
    open();
    ownStep(
        "swipe", [this] { swipe(50); }, Json::array());
    EXPECT_FALSE(page().isFirst());
    leave([this] { QTest::keyClick(_window.get(), Qt::Key_Escape); });
}

INSTANTIATE_TEST_SUITE_P(From, BackTest,
    testing::Values("Calls", "Messages", "Bluetooth", "TDSimSettingsController", "Misc", "VexilProducts"),
    [](const auto& page) { return std::string(page.param); });
