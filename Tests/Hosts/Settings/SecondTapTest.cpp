#include "Hand.h"
#include "WindowTest.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

namespace {

/// However slow the machine is, the second tap comes sooner.
constexpr int patientInterval = 60'000;
const QString personal = QStringLiteral("6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");

} // namespace

/// What the second half of a double tap does, on a system where two taps are one double tap.
class SecondTapTest : public WindowTest {
protected:
    SecondTapTest() { QGuiApplication::styleHints()->setMouseDoubleClickInterval(patientInterval); }
    ~SecondTapTest() override { QGuiApplication::styleHints()->setMouseDoubleClickInterval(0); }

    QPoint middleOf(const QString& identifier)
    {
        const PageRowItem* row = item(identifier);
        return row ? inWindow(*row, row->boundingRect().center()) : QPoint();
    }
    void doubleClick(QPoint place)
    {
        QTest::mouseDClick(_window.get(), Qt::LeftButton, {}, place);
        settle();
    }
    void doubleTap(QPoint place)
    {
        for (int i = 0; i < 2; ++i) {
            QTest::touchEvent(_window.get(), touchScreen()).press(0, place, _window.get());
            QTest::touchEvent(_window.get(), touchScreen()).release(0, place, _window.get());
        }
        settle();
    }
    void expectOnlyThePageWasOpened(const QByteArray& before)
    {
        EXPECT_EQ(page().title(), "Calls");
        EXPECT_EQ(host().pages()->depth(), 2);
        EXPECT_EQ(settings(_root.path()), before);
        EXPECT_TRUE(takePosted().empty());
    }
};

TEST_F(SecondTapTest, OfTheMouseOnAnEntryWorksNothingOnThePageThatComes)
{
    for (const Motion motion : { Motion::Reduced, Motion::Shown }) {
        openWindow(motion);
        const QByteArray before = settings(_root.path());
        doubleClick(middleOf("Calls"));
        expectOnlyThePageWasOpened(before);
        closeWindow();
    }
}

TEST_F(SecondTapTest, OfAFingerOnAnEntryWorksNothingOnThePageThatComes)
{
    openWindow();
    const QByteArray before = settings(_root.path());
    doubleTap(middleOf("Calls"));
    expectOnlyThePageWasOpened(before);
}

TEST_F(SecondTapTest, OfEnterWorksNothingOnThePageThatComes)
{
    openWindow();
    const QByteArray before = settings(_root.path());
    QTest::keyClick(_window.get(), Qt::Key_Down);
    QTest::keyClick(_window.get(), Qt::Key_Return);
    QTest::keyClick(_window.get(), Qt::Key_Return);
    settle();
    expectOnlyThePageWasOpened(before);
}

TEST_F(SecondTapTest, KeyThatIsHeldDownWorksOnce)
{
    openWindow();
    openPage("TDSimSettingsController");
    const int row = indexOf("LOGO+" + personal);
    list()->setProperty("currentIndex", row);
    list()->forceActiveFocus();
    QTest::keyPress(_window.get(), Qt::Key_Return);
    for (int i = 0; i < 3; ++i)
        QTest::simulateEvent(_window.get(), true, Qt::Key_Return, Qt::NoModifier, QString(), true);
    QTest::keyRelease(_window.get(), Qt::Key_Return);
    settle();
    EXPECT_TRUE(host().sheet());
}

TEST_F(SecondTapTest, OnARowThatAsksLeavesTheQuestion)
{
    openWindow();
    openPage("TDSimSettingsController");
    _window->resize(375, 1200);
    settle();
    doubleClick(middleOf("LOGO+" + personal));
    ASSERT_TRUE(host().sheet());
    EXPECT_EQ(host().sheet()->kind(), SheetModel::Kind::Actions);
}

TEST_F(SecondTapTest, OnAPhotoDoesNotPressTheButtonThatComesUpThere)
{
    // So many that one lies where the crop has its buttons.
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(_root.filePath("a.png")));
    const Json description { { "photos", std::vector<std::string>(24, "a.png") },
        { "subscriptions", { { { "uuid", personal.toStdString() }, { "label", "A" } } } } };
    QFile phone(_root.filePath("phone.json"));
    ASSERT_TRUE(phone.open(QIODevice::WriteOnly));
    phone.write(QByteArray::fromStdString(description.dump()));
    phone.close();
    _phone = phone.fileName().toStdString();
    openWindow();
    openPage("TDSimSettingsController");
    page().tap(indexOf("LOGO+" + personal));
    host().sheet()->choose(0);
    settle();
    // At the end of the lowest row, in the corner where "Choose" is then.
    doubleClick({ _window->width() - 60, _window->height() - 40 });
    ASSERT_TRUE(host().sheet());
    EXPECT_EQ(host().sheet()->kind(), SheetModel::Kind::Photos);
    EXPECT_TRUE(findButton(_window->rootObject(), "Choose"));
    EXPECT_EQ(indexOf("LOGO"), -1);
}

TEST_F(SecondTapTest, OnASwitchTurnsItBack)
{
    openWindow();
    const PageRowItem* row = item("TandemEnabled");
    ASSERT_TRUE(row);
    const bool wasOn = row->isChecked();
    takePosted();
    doubleClick(inWindow(*row, row->controlFrame().center()));
    EXPECT_EQ(takePosted().size(), 2U);
    EXPECT_EQ(item("TandemEnabled")->isChecked(), wasOn);
}

TEST_F(SecondTapTest, OnTheBackButtonGoesBackOnce)
{
    openWindow();
    openPage("Misc");
    QQuickItem* back = findButton(_window->rootObject(), "Back to Pairo");
    ASSERT_TRUE(back);
    doubleClick(back->mapToScene(back->boundingRect().center()).toPoint());
    EXPECT_EQ(host().pages()->depth(), 1);
    EXPECT_FALSE(host().sheet());
}
