#include "AccessibleTree.h"
#include "Place.h"

#include <QTest>

#include <map>

namespace {

/// More than any page or sheet has.
constexpr int mostStops = 60;

/// What Tab goes through, beginning where the focus is at first. A list is one stop; the arrows go through it.
const std::map<std::string, std::string> stopsOf {
    { "Root", "Enable Pairo, Share" },
    { "RootTurnedOff", "Enable Pairo, Share" },
    { "RootTurnedOnAgain", "Enable Pairo, Share" },
    { "Calls", "Choose SIM for Calls, Back to Pairo, Share" },
    { "Messages", "Choose SIM for Messages, Back to Pairo, Share" },
    { "Bluetooth", "Car Kit, Back to Pairo, Share" },
    { "BluetoothWithADevice", "Car Kit, Back to Pairo, Share" },
    { "Sims", "Carrier Logo, Back to Pairo, Share" },
    { "SimsWithALogo", "Carrier Logo, Back to Pairo, Share" },
    { "Misc", "Enable Logging, Back to Pairo, Share" },
    { "Products", "Open Again, Back to Pairo" },
    { "ShareSheet", "Copy, Save Picture, Mail, Done" },
    { "Shared", "Copy, Save Picture, Mail, Done" },
    { "Alert", "OK" },
    { "ChangeLogo", "Cancel, Change" },
    { "ResetLogo", "Cancel, Change, Reset" },
    { "ResetAllLogos", "Cancel, Reset All" },
    { "Photos", "Photo 1, Cancel" },
    { "Crop", "Photo under a square, Cancel, Choose" },
};

QString labelOf(QQuickItem* item)
{
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(item);
    return accessible ? accessible->text(QAccessible::Name) : QStringLiteral("nothing");
}

QQuickItem* viewOf(const QQuickItem& item)
{
    for (QQuickItem* above = item.parentItem(); above; above = above->parentItem()) {
        if (above->inherits("QQuickItemView"))
            return above;
    }
    return nullptr;
}

/// The toolkit says of a grid, which has the focus through its entries, that it can have it.
bool isGrid(const QAccessibleInterface& item)
{
    return item.role() == QAccessible::List && item.object()->inherits("QQuickGridView");
}

/// Of everything in the tree that says it can have the focus.
void collectFocusable(QAccessibleInterface& below, QStringList& names)
{
    if (!canBeSeen(below))
        return;
    if (below.state().focusable && !isGrid(below))
        names.push_back(below.text(QAccessible::Name));
    for (int i = 0; i < below.childCount(); ++i)
        collectFocusable(*below.child(i), names);
}

std::string joined(QStringList names)
{
    return names.join(QLatin1String(", ")).toStdString();
}

std::string sorted(QStringList names)
{
    names.sort();
    return joined(names);
}

} // namespace

/// Where the keyboard goes, and that it is seen there.
class FocusTest : public PlaceTest, public testing::WithParamInterface<Place> {
protected:
    QQuickItem* focused() { return _window->activeFocusItem(); }
    /// Presses the key until the focus is where it was at first.
    QStringList goRound(Qt::Key key)
    {
        const QQuickItem* first = focused();
        QStringList names;
        do {
            names.push_back(labelOf(focused()));
            expectVisibleFocus();
            QTest::keyClick(_window.get(), key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        } while (focused() != first && names.size() < mostStops);
        return names;
    }
    /// What the arrows reach in the list that has the focus.
    QStringList goThrough()
    {
        const bool isGrid = viewOf(*focused())->inherits("QQuickGridView");
        goWhileItMoves(isGrid ? Qt::Key_Left : Qt::Key_Up);
        return goWhileItMoves(isGrid ? Qt::Key_Right : Qt::Key_Down);
    }
    QStringList goWhileItMoves(Qt::Key key)
    {
        QStringList names;
        QQuickItem* last = nullptr;
        while (focused() != last && names.size() < mostStops) {
            last = focused();
            names.push_back(labelOf(last));
            QTest::keyClick(_window.get(), key);
            expectVisibleFocus();
        }
        return names;
    }
    /// The focus changes what is seen, and nothing but where it is.
    void expectVisibleFocus()
    {
        ASSERT_TRUE(focused());
        host().theme()->setShowsFocus(false);
        settle();
        const QImage without = _window->grabWindow();
        host().theme()->setShowsFocus(true);
        settle();
        const QImage with = _window->grabWindow();
        const QRect place = focused()->mapRectToScene(focused()->boundingRect()).toAlignedRect();
        EXPECT_NE(with.copy(place), without.copy(place)) << labelOf(focused()).toStdString();
        EXPECT_TRUE(QRect(QPoint(), _window->size()).contains(place)) << labelOf(focused()).toStdString();
    }
};

TEST_P(FocusTest, EverythingIsReachedAndSeen)
{
    go(GetParam());
    const QStringList stops = goRound(Qt::Key_Tab);
    EXPECT_EQ(joined(stops), stopsOf.at(GetParam().name));
    QStringList backwards = goRound(Qt::Key_Backtab);
    std::reverse(backwards.begin() + 1, backwards.end());
    EXPECT_EQ(joined(backwards), joined(stops));

    QStringList reached;
    for (qsizetype stop = 0; stop < stops.size(); ++stop) {
        reached += viewOf(*focused()) ? goThrough() : QStringList(labelOf(focused()));
        QTest::keyClick(_window.get(), Qt::Key_Tab);
    }
    QStringList all;
    collectFocusable(*accessibleTreeOf(*_window), all);
    EXPECT_EQ(sorted(reached), sorted(all));
}

INSTANTIATE_TEST_SUITE_P(On, FocusTest, testing::ValuesIn(everyPlace()), nameOf);

/// Where the focus is after something has come and gone.
class FocusReturnsTest : public PlaceTest {
protected:
    void expectFocusOn(const QString& name)
    {
        EXPECT_EQ(labelOf(_window->activeFocusItem()).toStdString(), name.toStdString());
    }
    void type(Qt::Key key)
    {
        QTest::keyClick(_window.get(), key);
        settle();
    }
};

TEST_F(FocusReturnsTest, ToTheRowThatOpenedThePage)
{
    go({ "Root", {}, {} });
    type(Qt::Key_Down);
    type(Qt::Key_Down);
    expectFocusOn("Messages");
    type(Qt::Key_Return);
    expectFocusOn("Choose SIM for Messages");
    type(Qt::Key_Escape);
    expectFocusOn("Messages");
}

TEST_F(FocusReturnsTest, ToTheRowThatAsked)
{
    go({ "Sims", { "TDSimSettingsController" }, {} });
    type(Qt::Key_Down);
    const QQuickItem* second = _window->activeFocusItem();
    type(Qt::Key_Return);
    expectFocusOn("Cancel");
    type(Qt::Key_Escape);
    EXPECT_EQ(_window->activeFocusItem(), second);
}

TEST_F(FocusReturnsTest, ToTheShareButton)
{
    go({ "Root", {}, {} });
    type(Qt::Key_Tab);
    expectFocusOn("Share");
    type(Qt::Key_Return);
    expectFocusOn("Copy");
    type(Qt::Key_Escape);
    expectFocusOn("Share");
}

TEST_F(FocusReturnsTest, ToThePhotoThatWasLeft)
{
    go({ "Photos", { "TDSimSettingsController", "LOGO+6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4" }, { "Change" } });
    type(Qt::Key_Right);
    expectFocusOn("Photo 2");
    type(Qt::Key_Return);
    expectFocusOn("Photo under a square");
    type(Qt::Key_Escape);
    expectFocusOn("Photo 2");
}
