#include "WindowTest.h"

#include <QElapsedTimer>
#include <QPointer>

#include <map>

namespace {

constexpr int patienceMilliseconds = 5000;

/// Where an item stood in a frame.
struct Place {
    double y = 0;
    double opacity = 1;

    bool operator==(const Place&) const = default;
};

using Frame = std::map<const PageRowItem*, Place>;

} // namespace

/// What is seen from a change until all is at rest, frame by frame.
class MotionTest : public WindowTest {
protected:
    /// Acts, and follows the items that are there until none of them moves any more.
    std::vector<Frame> framesOf(const std::function<void()>& act)
    {
        QObject::connect(
            _window.get(), &QQuickWindow::afterAnimating, &_recording, [this] { _frames.push_back(frame()); });
        act();
        QElapsedTimer watch;
        watch.start();
        do
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        while (!isAtRest() && watch.elapsed() < patienceMilliseconds);
        EXPECT_TRUE(isAtRest());
        _recording.disconnect();
        return _frames;
    }

    Frame frame()
    {
        Frame places;
        for (const PageRowItem* row : items())
            places[row] = { row->y(), row->opacity() };
        return places;
    }

    /// Every item of the page stands below the one before it, whole, and has been seen there.
    bool isAtRest()
    {
        auto rows = items();
        std::ranges::sort(rows, {}, &PageRowItem::row);
        if (static_cast<int>(rows.size()) != page().rowCount() || _frames.empty() || _frames.back() != frame())
            return false;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const bool follows = i == 0 || rows[i]->y() == rows[i - 1]->y() + rows[i - 1]->height();
            if (!follows || rows[i]->opacity() != 1)
                return false;
        }
        return true;
    }

    QObject _recording;
    std::vector<Frame> _frames;
};

TEST_F(MotionTest, RowThatGoesFadesAndOnlyTheRowsBelowMoveUp)
{
    openWindow(Motion::Shown);
    openPage("Calls");
    _window->resize(375, 1200);
    framesOf([] {});
    _frames.clear();

    const PageRowItem* going = item("TandemSimSelectionTimeForCalls");
    const Frame before = frame();
    const double top = before.at(going).y;
    const auto frames = framesOf([this] { item("ShowSimSlectionForCalls")->activate(); });
    ASSERT_GT(frames.size(), 3U);
    for (const auto& [row, start] : before) {
        Place last = start;
        for (const Frame& seen : frames) {
            const auto now = seen.find(row);
            if (now == seen.end())
                continue;
            if (row == going)
                EXPECT_LE(now->second.opacity, last.opacity);
            else
                EXPECT_EQ(now->second.opacity, 1);
            if (start.y <= top)
                EXPECT_EQ(now->second.y, start.y);
            else
                EXPECT_LE(now->second.y, last.y);
            last = now->second;
        }
    }
    EXPECT_EQ(frames.back().count(going), 0U);
}

TEST_F(MotionTest, RowThatComesBrightensAndOnlyTheRowsBelowMoveDown)
{
    openWindow(Motion::Shown);
    openPage("Calls");
    _window->resize(375, 1200);
    framesOf([this] { item("ShowSimSlectionForCalls")->activate(); });
    _frames.clear();

    const Frame before = frame();
    const auto frames = framesOf([this] { item("ShowSimSlectionForCalls")->activate(); });
    const PageRowItem* coming = item("TandemSimSelectionTimeForCalls");
    ASSERT_GT(frames.size(), 3U);
    const double top = frames.back().at(coming).y;
    for (const auto& [row, end] : frames.back()) {
        Place last = row == coming ? Place { top, 0 } : before.at(row);
        const double start = last.y;
        for (const Frame& seen : frames) {
            const auto now = seen.find(row);
            if (now == seen.end())
                continue;
            EXPECT_GE(now->second.opacity, last.opacity);
            if (start < top)
                EXPECT_EQ(now->second.y, start);
            else
                EXPECT_GE(now->second.y, last.y);
            last = now->second;
        }
    }
}

TEST_F(MotionTest, ReloadAfterwardsIsNotSeen)
{
    openWindow(Motion::Shown);
    openPage("Calls");
    _window->resize(375, 1200);
    framesOf([this] { item("ShowSimSlectionForCalls")->activate(); });
    const QImage atRest = _window->grabWindow();
    _frames.clear();
    const Frame before = frame();
    for (const Frame& seen : framesOf([this] {
             page().list()->reloadSpecifiers();
             _window->update();
         })) {
        ASSERT_EQ(seen.size(), before.size());
        for (const auto& [row, place] : seen) {
            ASSERT_EQ(before.count(row), 1U);
            EXPECT_EQ(place.y, before.at(row).y);
            EXPECT_EQ(place.opacity, 1);
        }
    }
    EXPECT_EQ(_window->grabWindow(), atRest);
}
