#include "Hand.h"
#include "WindowTest.h"

#include <QSignalSpy>
#include <QTest>

/// What a control does while it is worked, and what the window does then. What it leaves behind: EveryControlTest.
class ControlTest : public WindowTest { };

TEST_F(ControlTest, SliderWritesOnceWhenTheMouseLetsGo)
{
    openWindow();
    openPage("Calls");
    PageRowItem* row = item("TandemSimSelectionTimeForCalls");
    ASSERT_TRUE(row);
    ASSERT_EQ(row->kind(), PageRowItem::Kind::Slider);
    const QByteArray before = settings(_root.path());
    const QPoint thumb = inWindow(*row, row->thumbFrame().center());
    QTest::mousePress(_window.get(), Qt::LeftButton, {}, thumb);
    for (int x = 10; x <= 120; x += 10)
        QTest::mouseMove(_window.get(), thumb + QPoint(x, 0));
    EXPECT_TRUE(takePosted().empty());
    EXPECT_EQ(settings(_root.path()), before);
    EXPECT_GT(row->value(), 4);
    QTest::mouseRelease(_window.get(), Qt::LeftButton, {}, thumb + QPoint(120, 0));
    settle();
    EXPECT_EQ(takePosted().size(), 1U);
    EXPECT_NE(settings(_root.path()), before);
    EXPECT_EQ(row->value(), std::round(row->value()));
}

TEST_F(ControlTest, SliderWithStepsShowsTheStepThatItWillTake)
{
    openWindow();
    openPage("Calls");
    const PageRowItem* row = item("TandemSimSelectionTimeForCalls");
    ASSERT_TRUE(row);
    const QPoint thumb = inWindow(*row, row->thumbFrame().center());
    QTest::mousePress(_window.get(), Qt::LeftButton, {}, thumb);
    for (int x = 1; x <= 100; x += 3) {
        QTest::mouseMove(_window.get(), thumb + QPoint(x, 0));
        EXPECT_EQ(row->value(), std::round(row->value()));
    }
    const double shown = row->value();
    QTest::mouseRelease(_window.get(), Qt::LeftButton, {}, thumb + QPoint(100, 0));
    settle();
    EXPECT_EQ(item("TandemSimSelectionTimeForCalls")->value(), shown);
}

TEST_F(ControlTest, SliderWritesOnceWhenTheKeyIsLetGo)
{
    openWindow();
    openPage("Calls");
    PageRowItem* row = item("TandemSimSelectionTimeForCalls");
    ASSERT_TRUE(row);
    list()->setProperty("currentIndex", row->row());
    list()->forceActiveFocus();
    for (int i = 0; i < 3; ++i)
        QTest::keyPress(_window.get(), Qt::Key_Right);
    EXPECT_TRUE(takePosted().empty());
    QTest::keyRelease(_window.get(), Qt::Key_Right);
    settle();
    EXPECT_EQ(takePosted().size(), 1U);
    EXPECT_EQ(row->value(), 6);
}

TEST_F(ControlTest, SliderWritesOnceWhenTheFingerLetsGo)
{
    openWindow();
    openPage("Calls");
    QPointingDevice* screen = touchScreen();
    PageRowItem* row = item("TandemSimSelectionTimeForCalls");
    ASSERT_TRUE(row);
    const QPoint thumb = inWindow(*row, row->thumbFrame().center());
    QTest::touchEvent(_window.get(), screen).press(0, thumb, _window.get());
    for (int x = 10; x <= 80; x += 10)
        QTest::touchEvent(_window.get(), screen).move(0, thumb + QPoint(x, 0), _window.get());
    EXPECT_TRUE(takePosted().empty());
    QTest::touchEvent(_window.get(), screen).release(0, thumb + QPoint(80, 0), _window.get());
    settle();
    EXPECT_EQ(takePosted().size(), 1U);
}

TEST_F(ControlTest, KeyboardAloneOpensAPageAndGoesBack)
{
    openWindow();
    ASSERT_TRUE(list()->hasActiveFocus());
    for (int i = 0; i < 10 && page().isFirst(); ++i) {
        QTest::keyClick(_window.get(), Qt::Key_Down);
        if (page().identifier(list()->property("currentIndex").toInt()) == "Calls")
            QTest::keyClick(_window.get(), Qt::Key_Return);
        settle();
    }
    EXPECT_EQ(page().title(), "Calls");
    EXPECT_TRUE(host().theme()->showsFocus());
    QTest::keyClick(_window.get(), Qt::Key_Left, Qt::AltModifier);
    settle();
    EXPECT_TRUE(page().isFirst());
}

TEST_F(ControlTest, EdgeSwipeGoesBack)
{
    openWindow();
    openPage("Calls");
    QPointingDevice* screen = touchScreen();
    QTest::touchEvent(_window.get(), screen).press(0, { 5, 300 }, _window.get());
    for (int x = 15; x <= 300; x += 15)
        QTest::touchEvent(_window.get(), screen).move(0, { x, 300 }, _window.get());
    QTest::touchEvent(_window.get(), screen).release(0, { 300, 300 }, _window.get());
    settle();
    EXPECT_TRUE(page().isFirst());
}

TEST_F(ControlTest, SheetByKeyboard)
{
    openWindow();
    openPage("Misc");
    list()->setProperty("currentIndex", indexOf("EmailLog"));
    list()->forceActiveFocus();
    QTest::keyClick(_window.get(), Qt::Key_Return);
    settle();
    ASSERT_TRUE(host().sheet());
    EXPECT_EQ(host().sheet()->kind(), SheetModel::Kind::Alert);
    QTest::keyClick(_window.get(), Qt::Key_Return);
    settle();
    EXPECT_FALSE(host().sheet());
}

TEST_F(ControlTest, OnlyTheNamedRowComesAndGoes)
{
    openWindow();
    openPage("Calls");
    QSignalSpy removed(&page(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserted(&page(), &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&page(), &QAbstractItemModel::modelReset);
    const int slider = indexOf("TandemSimSelectionTimeForCalls");
    const auto before = items();
    item("ShowSimSlectionForCalls")->activate();
    settle();
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0][1].toInt(), slider);
    EXPECT_EQ(removed[0][2].toInt(), slider);
    EXPECT_EQ(inserted.size(), 0);
    for (const PageRowItem* row : items())
        EXPECT_NE(std::find(before.begin(), before.end(), row), before.end());
    item("ShowSimSlectionForCalls")->activate();
    settle();
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), slider);
    EXPECT_EQ(removed.size(), 1);
    EXPECT_EQ(reset.size(), 0);
}

TEST_F(ControlTest, AReloadOfTheSameRowsMovesNothing)
{
    openWindow();
    openPage("Calls");
    QSignalSpy removed(&page(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserted(&page(), &QAbstractItemModel::rowsInserted);
    settle();
    const QImage before = _window->grabWindow();
    page().list()->reloadSpecifiers();
    EXPECT_EQ(removed.size() + inserted.size(), 0);
    settle();
    EXPECT_EQ(_window->grabWindow(), before);
}
