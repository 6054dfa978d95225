#include "Hand.h"
#include "WindowTest.h"

#include <QTest>

namespace {

const QString personal = QStringLiteral("6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");

} // namespace

/// Where the keyboard goes on when rows, windows and other programs change what it stands on.
class KeyboardPlaceTest : public WindowTest {
protected:
    void type(Qt::Key key)
    {
        QTest::keyClick(_window.get(), key);
        settle();
    }
    void focusOn(const QString& identifier)
    {
        const int row = indexOf(identifier);
        ASSERT_GE(row, 0);
        list()->setProperty("currentIndex", row);
        list()->forceActiveFocus();
        settle();
    }
    PageRowItem* focusedRow() { return qobject_cast<PageRowItem*>(_window->activeFocusItem()); }
    QString focusedIdentifier() { return focusedRow() ? page().identifier(focusedRow()->row()) : QString(); }
    void expectFocusInSight()
    {
        const QQuickItem* focused = _window->activeFocusItem();
        ASSERT_TRUE(focused);
        const QRectF place = focused->mapRectToScene(focused->boundingRect());
        EXPECT_TRUE(QRectF(QPointF(), _window->size()).contains(place))
            << place.top() << " to " << place.bottom() << " of " << _window->height();
    }
    void changeElsewhere(const QStringList& words)
    {
        QProcess other;
        other.start(QStringLiteral(TANDEM_DRIVER), QStringList { "--root", _root.path() } + words);
        ASSERT_TRUE(other.waitForFinished());
        ASSERT_EQ(other.exitCode(), 0);
        host().turn([] {});
        settle();
    }
};

TEST_F(KeyboardPlaceTest, RowThatGoes)
{
    openWindow();
    openPage("Calls");
    focusOn("TandemSimSelectionTimeForCalls");
    changeElsewhere({ "set", "calls", "ShowSimSlectionForCalls", "off" });
    ASSERT_TRUE(focusedRow());
    EXPECT_TRUE(focusedRow()->isWorkable());
}

TEST_F(KeyboardPlaceTest, RowsThatGoAndComeAgain)
{
    openWindow();
    openPage("Calls");
    focusOn("TandemSimSelectionTimeForCalls");
    changeElsewhere({ "set", "calls", "TandemEnabledCalls", "off" });
    EXPECT_EQ(focusedIdentifier(), "TandemEnabledCalls");
    changeElsewhere({ "set", "calls", "TandemEnabledCalls", "on" });
    type(Qt::Key_Down);
    EXPECT_EQ(focusedIdentifier(), "ShowSimSlectionForCalls");
}

TEST_F(KeyboardPlaceTest, RowThatItsOwnWorkTakesAway)
{
    openWindow();
    openPage("TDSimSettingsController");
    page().tap(indexOf("LOGO+" + personal));
    host().sheet()->choose(0);
    host().sheet()->pickWhole(host().sheet()->photos().first());
    settle();
    focusOn("LOGO");
    type(Qt::Key_Return);
    host().sheet()->choose(0);
    settle();
    ASSERT_EQ(indexOf("LOGO"), -1);
    ASSERT_TRUE(focusedRow());
    EXPECT_TRUE(focusedRow()->isWorkable());
}

TEST_F(KeyboardPlaceTest, RowThatIsDisabledBeneathAnotherPage)
{
    openWindow();
    focusOn("Messages");
    type(Qt::Key_Return);
    changeElsewhere({ "set", "root", "TandemEnabled", "off" });
    type(Qt::Key_Escape);
    ASSERT_TRUE(focusedRow());
    EXPECT_TRUE(focusedRow()->isWorkable());
}

TEST_F(KeyboardPlaceTest, RowThatWasClicked)
{
    openWindow();
    const PageRowItem* row = item("TDSimSettingsController");
    ASSERT_TRUE(row);
    QTest::mouseClick(_window.get(), Qt::LeftButton, {}, inWindow(*row, row->boundingRect().center()));
    settle();
    type(Qt::Key_Escape);
    EXPECT_EQ(focusedIdentifier(), "TDSimSettingsController");
    type(Qt::Key_Up);
    EXPECT_EQ(focusedIdentifier(), "Bluetooth");
}

TEST_F(KeyboardPlaceTest, RowThatWasClickedInAScrolledList)
{
    openWindow();
    openPage("Messages");
    _window->resize(375, 480);
    settle();
    list()->setProperty("contentY", list()->property("lowestY"));
    settle();
    EXPECT_EQ(list()->property("currentIndex").toInt(), indexOf("TandemEnabledMessages"));
    const PageRowItem* row = item("TandemMessagesApp-org.gnome.Fractal");
    ASSERT_TRUE(row);
    const double scrolled = list()->property("contentY").toDouble();
    QTest::mouseClick(_window.get(), Qt::LeftButton, {}, inWindow(*row, row->controlFrame().center()));
    settle();
    EXPECT_EQ(focusedIdentifier(), "TandemMessagesApp-org.gnome.Fractal");
    EXPECT_EQ(list()->property("contentY").toDouble(), scrolled);
}

TEST_F(KeyboardPlaceTest, EndAndHomeShowAllThatStandsThere)
{
    openWindow();
    _window->resize(568, 240);
    settle();
    type(Qt::Key_End);
    EXPECT_TRUE(list()->property("atYEnd").toBool());
    EXPECT_EQ(focusedIdentifier(), "VexilProducts");
    type(Qt::Key_Home);
    EXPECT_TRUE(list()->property("atYBeginning").toBool());
    EXPECT_EQ(focusedIdentifier(), "TandemEnabled");
}

TEST_F(KeyboardPlaceTest, ArrowsBeyondTheLastAndTheFirstRow)
{
    openWindow();
    _window->resize(568, 240);
    settle();
    for (int i = 0; i < 10; ++i)
        type(Qt::Key_Down);
    EXPECT_TRUE(list()->property("atYEnd").toBool());
    for (int i = 0; i < 10; ++i)
        type(Qt::Key_Up);
    EXPECT_TRUE(list()->property("atYBeginning").toBool());
}

TEST_F(KeyboardPlaceTest, PageKeysGoThroughTheWholeList)
{
    openWindow();
    _window->resize(568, 240);
    settle();
    double before = list()->property("contentY").toDouble();
    for (int i = 0; i < 10 && !list()->property("atYEnd").toBool(); ++i) {
        type(Qt::Key_PageDown);
        expectFocusInSight();
        const double now = list()->property("contentY").toDouble();
        EXPECT_GT(now, before);
        EXPECT_LE(now, before + list()->height());
        before = now;
    }
    EXPECT_EQ(focusedIdentifier(), "VexilProducts");
    for (int i = 0; i < 10 && !list()->property("atYBeginning").toBool(); ++i)
        type(Qt::Key_PageUp);
    EXPECT_EQ(focusedIdentifier(), "TandemEnabled");
}

TEST_F(KeyboardPlaceTest, WindowThatBecomesSmaller)
{
    openWindow();
    openPage("Messages");
    _window->resize(900, 700);
    settle();
    type(Qt::Key_End);
    _window->resize(320, 300);
    settle();
    expectFocusInSight();
}

TEST_F(KeyboardPlaceTest, PageThatIsOpenedInALowWindow)
{
    openWindow();
    host().theme()->setTextScale(2);
    _window->resize(320, 300);
    settle();
    focusOn("TDSimSettingsController");
    type(Qt::Key_Return);
    EXPECT_EQ(page().title(), "SIM Settings");
    expectFocusInSight();
}

TEST_F(KeyboardPlaceTest, ButtonsOfASheetThatIsHigherThanTheWindow)
{
    openWindow();
    _window->resize(568, 240);
    page().pressRight();
    settle();
    for (const char* name : { "Copy", "Save Picture", "Mail", "Done" }) {
        const QQuickItem* button = findButton(_window->rootObject(), QString::fromLatin1(name));
        ASSERT_EQ(_window->activeFocusItem(), button) << name;
        expectFocusInSight();
        type(Qt::Key_Down);
    }
    type(Qt::Key_Up);
    type(Qt::Key_Up);
    expectFocusInSight();
}

TEST_F(KeyboardPlaceTest, WhatASheetSaysOfItsWork)
{
    openWindow();
    host().theme()->setTextScale(2);
    _window->resize(320, 568);
    page().pressRight();
    settle();
    type(Qt::Key_Return);
    const QQuickItem* outcome = findItem(_window->rootObject(), [this](const QQuickItem& item) {
        return item.inherits("QQuickText") && item.property("text").toString() == host().sheet()->outcome();
    });
    ASSERT_TRUE(outcome);
    EXPECT_TRUE(QRectF(QPointF(), _window->size()).contains(outcome->mapRectToScene(outcome->boundingRect())));
}

TEST_F(KeyboardPlaceTest, ChoicesBelowALongMessage)
{
    openWindow();
    openPage("Misc");
    host().theme()->setTextScale(2);
    _window->resize(320, 300);
    settle();
    page().tap(indexOf("EmailLog"));
    settle();
    ASSERT_TRUE(host().sheet());
    expectFocusInSight();
    EXPECT_EQ(_window->activeFocusItem(), findButton(_window->rootObject(), "OK"));
}

TEST_F(KeyboardPlaceTest, ListWithoutRowsIsNoStop)
{
    QFile phone(_root.filePath("phone.json"));
    ASSERT_TRUE(phone.open(QIODevice::WriteOnly));
    phone.write("{}");
    phone.close();
    _phone = phone.fileName().toStdString();
    openWindow();
    openPage("Bluetooth");
    for (int i = 0; i < 4; ++i) {
        type(Qt::Key_Tab);
        EXPECT_FALSE(_window->activeFocusItem()->inherits("QQuickListView"));
    }
}
