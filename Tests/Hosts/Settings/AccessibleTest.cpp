#include "AccessibleTree.h"
#include "Place.h"

#include <QDate>
#include <QFile>
#include <QRegularExpression>

#include <functional>

namespace {

/// Set it to have the files of the trees written anew, to be read and committed.
constexpr const char* writeVariable = "TANDEM_WRITE_ACCESSIBLE";

QString fileOf(const Place& place)
{
    return QStringLiteral(ACCESSIBLE_TREES "/%1.txt").arg(QLatin1String(place.name));
}

/// The footer names the version of this build and the year of today.
std::string withoutVersionAndYear(const std::string& text)
{
    static const QRegularExpression version(QStringLiteral("Version \\S+"));
    return QString::fromStdString(text)
        .replace(version, "Version VERSION")
        .replace(QString::number(QDate::currentDate().year()), "YEAR")
        .toStdString();
}

} // namespace

/// What a screen reader finds on every page and every sheet.
class AccessibleTest : public PlaceTest, public testing::WithParamInterface<Place> { };

TEST_P(AccessibleTest, TreeIsAsItWasRead)
{
    go(GetParam());
    const std::string tree = withoutVersionAndYear(textOf(*accessibleTreeOf(*_window)));
    QFile file(fileOf(GetParam()));
    if (qEnvironmentVariableIsSet(writeVariable)) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(tree));
        FAIL() << "written: " << fileOf(GetParam()).toStdString();
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << "set " << writeVariable << " to have it written";
    EXPECT_EQ(tree, file.readAll().toStdString());
}

INSTANTIATE_TEST_SUITE_P(Of, AccessibleTest, testing::ValuesIn(everyPlace()), nameOf);

/// Works the pages through the tree alone, as a screen reader does.
class AccessibleWorkTest : public PlaceTest {
protected:
    QAccessibleInterface* find(QAccessible::Role role, const QString& name)
    {
        QAccessibleInterface* found = findAccessible(accessibleTreeOf(*_window), role, name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    bool isThere(QAccessible::Role role, const QString& name)
    {
        return findAccessible(accessibleTreeOf(*_window), role, name) != nullptr;
    }
    void act(QAccessibleInterface* item, const QString& action)
    {
        ASSERT_TRUE(item && item->actionInterface());
        ASSERT_TRUE(item->actionInterface()->actionNames().contains(action)) << action.toStdString();
        item->actionInterface()->doAction(action);
        settle();
    }
    void press(const QString& button)
    {
        act(find(QAccessible::Button, button), QAccessibleActionInterface::pressAction());
    }
    /// Turns it over, and says what it is then.
    bool toggle(const QString& name)
    {
        act(find(QAccessible::CheckBox, name), QAccessibleActionInterface::toggleAction());
        QAccessibleInterface* after = find(QAccessible::CheckBox, name);
        return after && after->state().checked;
    }
    double seconds()
    {
        QAccessibleInterface* slider = find(QAccessible::Slider, secondsName);
        EXPECT_EQ(slider->text(QAccessible::Value), slider->valueInterface()->currentValue().toString());
        return slider->valueInterface()->currentValue().toDouble();
    }
    std::size_t changesPosted() { return takePosted().size(); }

    const QString secondsName = QStringLiteral("Seconds to Choose a SIM");
};

TEST_F(AccessibleWorkTest, TheWholeCallsPage)
{
    go({ "Root", {}, {} });
    press("Calls");
    EXPECT_TRUE(isThere(QAccessible::Heading, "Calls"));
    changesPosted();

    for (const QString& name : QStringList { "Plasma Dialer", "Linphone", "Jami", "Calls" }) {
        EXPECT_FALSE(toggle(name)) << name.toStdString();
        EXPECT_TRUE(toggle(name)) << name.toStdString();
    }
    EXPECT_EQ(changesPosted(), 8U);

    EXPECT_FALSE(toggle("Ask Before Each Call"));
    EXPECT_FALSE(isThere(QAccessible::Slider, secondsName));
    EXPECT_TRUE(toggle("Ask Before Each Call"));
    EXPECT_EQ(changesPosted(), 2U);

    EXPECT_EQ(seconds(), 3);
    act(find(QAccessible::Slider, secondsName), QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(seconds(), 4);
    act(find(QAccessible::Slider, secondsName), QAccessibleActionInterface::decreaseAction());
    act(find(QAccessible::Slider, secondsName), QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(seconds(), 2);
    EXPECT_EQ(changesPosted(), 3U);
    QAccessibleValueInterface* slider = find(QAccessible::Slider, secondsName)->valueInterface();
    slider->setCurrentValue(slider->maximumValue());
    settle();
    EXPECT_EQ(seconds(), 10);
    EXPECT_EQ(changesPosted(), 1U);
    slider = find(QAccessible::Slider, secondsName)->valueInterface();
    slider->setCurrentValue(6.8);
    settle();
    EXPECT_EQ(seconds(), 7);
    EXPECT_EQ(changesPosted(), 1U);

    EXPECT_FALSE(toggle("Choose SIM for Calls"));
    EXPECT_FALSE(isThere(QAccessible::CheckBox, "Ask Before Each Call"));
    EXPECT_FALSE(isThere(QAccessible::Heading, "Apps"));
    EXPECT_TRUE(toggle("Choose SIM for Calls"));
    EXPECT_TRUE(isThere(QAccessible::Heading, "Apps"));
    EXPECT_EQ(seconds(), 7);

    act(find(QAccessible::CheckBox, "Jami"), QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(find(QAccessible::CheckBox, "Jami")->state().focused);

    press("Back to Pairo");
    EXPECT_TRUE(page().isFirst());
    EXPECT_TRUE(isThere(QAccessible::CheckBox, "Enable Pairo"));
}

TEST_F(AccessibleWorkTest, EveryPartKnowsItsPlace)
{
    go({ "Calls", { "Calls" }, {} });
    // Where a part says that it is a child, the parent knows it as one, and each lies in the window.
    const std::function<void(QAccessibleInterface&)> check = [&](QAccessibleInterface& whole) {
        for (int i = 0; i < whole.childCount(); ++i) {
            QAccessibleInterface* part = whole.child(i);
            ASSERT_TRUE(part && part->isValid());
            EXPECT_EQ(whole.indexOfChild(part), i) << part->text(QAccessible::Name).toStdString();
            EXPECT_EQ(part->parent(), &whole) << part->text(QAccessible::Name).toStdString();
            EXPECT_EQ(part->window(), _window.get());
            if (canBeSeen(*part)) {
                EXPECT_TRUE(_window->geometry().contains(part->rect())) << part->text(QAccessible::Name).toStdString();
                EXPECT_FALSE(part->rect().isEmpty());
            }
            check(*part);
        }
    };
    check(*accessibleTreeOf(*_window));
}
