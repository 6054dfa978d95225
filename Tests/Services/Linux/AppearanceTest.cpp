#include "MockPortal.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace {

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString interface = QStringLiteral("org.gnome.desktop.interface");
const QString colorScheme = QStringLiteral("color-scheme");
const QString reducedMotion = QStringLiteral("reduced-motion");
const QString textScale = QStringLiteral("text-scaling-factor");
const QString animations = QStringLiteral("enable-animations");

/// Dark, text scale, reduced motion.
using Looks = std::tuple<bool, double, bool>;
const Looks usual { false, 1, false };

/// A phone on a machine with a bus, and a portal on that when the test starts it.
class DesktopAppearance : public ::testing::Test {
protected:
    DesktopAppearance()
    {
        for (const char* name : { "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS" })
            qputenv(name, _bus.address().toUtf8());
    }

    void startPortal(const GroupsOfProperties& settings)
    {
        portal = std::make_unique<MockPortal>(_bus.client(QStringLiteral("portal")), settings);
        portal->appear();
    }

    void openPhone()
    {
        _phone = std::make_unique<LinuxPhone>([](const std::string& path) { return path; });
        _phone->setAppearanceObserver([this] { ++changes; });
    }

    Looks looks() const
    {
        const auto service = _phone->phone().appearance;
        return { service->isDark(), service->textScale(), service->isMotionReduced() };
    }

    Looks looksAtStart(const GroupsOfProperties& settings)
    {
        startPortal(settings);
        openPhone();
        const Looks start = looks();
        closePhone();
        portal.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
        return start;
    }

    /// After the next change.
    Looks looksAfter(const QString& group, const QString& key, const QVariant& value)
    {
        const int before = changes;
        portal->change(group, key, value);
        EXPECT_TRUE(PrivateBus::waitUntil([&] { return changes > before; }));
        return looks();
    }

    void closePhone()
    {
        _phone.reset();
        for (const char* name : { "tandem-session", "tandem-system" })
            QDBusConnection::disconnectFromBus(QLatin1String(name));
    }

    ~DesktopAppearance() override { closePhone(); }

    std::unique_ptr<MockPortal> portal;
    int changes = 0;

private:
    PrivateBus _bus;
    std::unique_ptr<LinuxPhone> _phone;
};

TEST_F(DesktopAppearance, AsUsualWithoutAPortal)
{
    openPhone();
    EXPECT_EQ(looks(), usual);
}

TEST_F(DesktopAppearance, EachIsReadAtTheStart)
{
    EXPECT_EQ(looksAtStart({ { appearance, { { colorScheme, 1U } } } }), Looks(true, 1, false));
    EXPECT_EQ(looksAtStart({ { interface, { { textScale, 1.25 } } } }), Looks(false, 1.25, false));
    EXPECT_EQ(looksAtStart({ { interface, { { animations, false } } } }), Looks(false, 1, true));
    EXPECT_EQ(looksAtStart({ { appearance, { { reducedMotion, 1U } } } }), Looks(false, 1, true));
}

TEST_F(DesktopAppearance, EachMeansNothingWhereTheUserHasNoWish)
{
    EXPECT_EQ(looksAtStart({ { appearance, { { colorScheme, 0U }, { reducedMotion, 0U } } },
                  { interface, { { textScale, 1.0 }, { animations, true } } } }),
        usual);
    EXPECT_EQ(looksAtStart({ { appearance, { { colorScheme, 2U }, { reducedMotion, 2U } } } }), usual);
}

TEST_F(DesktopAppearance, EachIsFollowed)
{
    startPortal({});
    openPhone();
    ASSERT_EQ(looks(), usual);
    EXPECT_EQ(looksAfter(appearance, colorScheme, 1U), Looks(true, 1, false));
    EXPECT_EQ(looksAfter(interface, textScale, 1.5), Looks(true, 1.5, false));
    EXPECT_EQ(looksAfter(interface, animations, false), Looks(true, 1.5, true));
    EXPECT_EQ(looksAfter(interface, animations, true), Looks(true, 1.5, false));
    EXPECT_EQ(looksAfter(appearance, reducedMotion, 1U), Looks(true, 1.5, true));
    EXPECT_EQ(looksAfter(appearance, reducedMotion, 0U), Looks(true, 1.5, false));
    EXPECT_EQ(looksAfter(interface, textScale, 1.0), Looks(true, 1, false));
    EXPECT_EQ(looksAfter(appearance, colorScheme, 2U), usual);
    EXPECT_EQ(changes, 8);
}

TEST_F(DesktopAppearance, ChangeBeforeTheFirstAnswerIsNeeded)
{
    startPortal({ { interface, { { textScale, 1.25 } } } });
    openPhone();
    ASSERT_TRUE(portal->waitForQuestions(1));
    EXPECT_EQ(looksAfter(appearance, colorScheme, 1U), Looks(true, 1.25, false));
    EXPECT_EQ(looksAfter(appearance, colorScheme, 0U), Looks(false, 1.25, false));
}

TEST_F(DesktopAppearance, ChangeBeforeAnAnswerThatDoesNotKnowOfIt)
{
    startPortal({ { interface, { { textScale, 1.25 } } } });
    portal->keepWaiting();
    openPhone();
    ASSERT_EQ(looks(), usual);
    ASSERT_TRUE(portal->waitForQuestions(2));
    EXPECT_EQ(looksAfter(appearance, colorScheme, 1U), Looks(true, 1, false));
    const int before = changes;
    portal->answerAtLast();
    EXPECT_TRUE(PrivateBus::waitUntil([&] { return changes > before; }));
    EXPECT_EQ(looks(), Looks(true, 1.25, false));
}

TEST_F(DesktopAppearance, ObserverHearsOfNothingElse)
{
    startPortal({});
    openPhone();
    ASSERT_EQ(looks(), usual);
    portal->change(appearance, colorScheme, 2U);
    portal->change(interface, QStringLiteral("cursor-size"), 48);
    portal->change(QStringLiteral("org.gnome.desktop.other"), colorScheme, 1U);
    EXPECT_EQ(looksAfter(interface, textScale, 1.5), Looks(false, 1.5, false));
    EXPECT_EQ(changes, 1);
}

TEST_F(DesktopAppearance, ValuesOfOtherTypesAndOutOfBounds)
{
    const QString dark = QStringLiteral("dark");
    EXPECT_EQ(looksAtStart({ { appearance, { { colorScheme, dark }, { reducedMotion, true } } },
                  { interface, { { textScale, dark }, { animations, 0 } } } }),
        usual);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(looksAtStart({ { interface, { { textScale, nan } } } }), usual);
    EXPECT_EQ(looksAtStart({ { interface, { { textScale, 0.0 } } } }), Looks(false, 0.5, false));
    EXPECT_EQ(looksAtStart({ { interface, { { textScale, 1e9 } } } }), Looks(false, 3, false));
}

TEST_F(DesktopAppearance, PortalThatComesLater)
{
    openPhone();
    ASSERT_EQ(looks(), usual);
    startPortal(
        { { appearance, { { colorScheme, 1U }, { reducedMotion, 1U } } }, { interface, { { textScale, 2.0 } } } });
    EXPECT_TRUE(PrivateBus::waitUntil([this] { return changes > 0; }));
    EXPECT_EQ(looks(), Looks(true, 2, true));
    EXPECT_EQ(changes, 1);
}

TEST_F(DesktopAppearance, PortalThatAnswersTooLateIsHeardAllTheSame)
{
    startPortal({ { appearance, { { colorScheme, 1U } } } });
    portal->keepWaiting();
    openPhone();
    EXPECT_EQ(looks(), usual);
    portal->answerAtLast();
    EXPECT_TRUE(PrivateBus::waitUntil([this] { return changes > 0; }));
    EXPECT_EQ(looks(), Looks(true, 1, false));
}

} // namespace
