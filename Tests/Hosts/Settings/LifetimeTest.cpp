#include "WindowTest.h"

#include <QTest>

#include <random>

namespace {

/// Five runs: 10,000 events, fewer where the sanitizers slow each of them down.
#ifdef __SANITIZE_ADDRESS__
constexpr int eventsPerRun = 300;
#else
constexpr int eventsPerRun = 2000;
#endif

int warnings = 0;

void countWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    // A click that the test makes beside a window that it has just made smaller is the test's own.
    const bool ours = message.startsWith(QLatin1String("Mouse event"));
    if (!ours && (type == QtWarningMsg || type == QtCriticalMsg)) {
        ++warnings;
        ADD_FAILURE() << message.toStdString();
    }
}

} // namespace

/// Nothing that a user does, and when, ends the program or makes it complain.
class LifetimeTest : public WindowTest {
protected:
    LifetimeTest()
    {
        warnings = 0;
        qInstallMessageHandler(countWarnings);
    }
    ~LifetimeTest() override
    {
        closeWindow();
        qInstallMessageHandler(nullptr);
    }
};

TEST_F(LifetimeTest, ClosedWhileAPageSlidesIn)
{
    openWindow(Motion::Shown);
    page().tap(indexOf("Calls"));
    QCoreApplication::processEvents();
    closeWindow();
    settle();
}

TEST_F(LifetimeTest, ClosedWhileAPageSlidesOut)
{
    openWindow(Motion::Shown);
    openPage("Calls");
    host().goBack();
    QCoreApplication::processEvents();
    _window->resize(700, 400);
    QCoreApplication::processEvents();
    closeWindow();
    settle();
}

TEST_F(LifetimeTest, ClosedWhileRowsGo)
{
    openWindow(Motion::Shown);
    item("TandemEnabled")->activate();
    QCoreApplication::processEvents();
    closeWindow();
    settle();
}

TEST_F(LifetimeTest, ClosedWhileASheetComesUp)
{
    openWindow(Motion::Shown);
    page().pressRight();
    QCoreApplication::processEvents();
    closeWindow();
    settle();
}

class RandomEventsTest : public LifetimeTest, public testing::WithParamInterface<unsigned> { };

TEST_P(RandomEventsTest, NothingBreaks)
{
    openWindow(Motion::Shown);
    std::mt19937 random(GetParam());
    const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    constexpr std::array keys { Qt::Key_Tab, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space,
        Qt::Key_Return, Qt::Key_Escape };
    for (int i = 0; i < eventsPerRun; ++i) {
        const QPoint place(upTo(_window->width()), upTo(_window->height()));
        switch (upTo(12)) {
        case 0:
            _window->resize(320 + upTo(700), 240 + upTo(700));
            break;
        case 1:
            host().setDark(upTo(2) == 0);
            break;
        case 2:
            host().theme()->setTextScale(1 + upTo(11) / 10.0);
            break;
        case 3:
            QTest::keyClick(_window.get(), Qt::Key_Left, Qt::AltModifier);
            break;
        case 4:
        case 5:
        case 6:
            QTest::keyClick(_window.get(), keys.at(static_cast<std::size_t>(upTo(keys.size()))));
            break;
        case 7:
            QTest::mousePress(_window.get(), Qt::LeftButton, {}, place);
            QTest::mouseMove(_window.get(), place + QPoint(upTo(80) - 40, upTo(80) - 40));
            QTest::mouseRelease(_window.get(), Qt::LeftButton, {}, place);
            break;
        default:
            QTest::mouseClick(_window.get(), Qt::LeftButton, {}, place);
        }
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(warnings, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEventsTest, testing::Range(1U, 6U));
