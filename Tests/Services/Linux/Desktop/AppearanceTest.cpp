#include "Bus/TestBus.h"
#include "Desktop/TestPortal.h"
#include "Linux/Bus/FirstWait.h"
#include "Linux/Desktop/PortalAppearance.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* interface = "org.gnome.desktop.interface";
constexpr const char* colorScheme = "color-scheme";
constexpr const char* reducedMotion = "reduced-motion";
constexpr const char* textScale = "text-scaling-factor";
constexpr const char* animations = "enable-animations";
constexpr const char* noSettings = "@a{sa{sv}} {}";

/// Dark, text scale, reduced motion.
using Looks = std::tuple<bool, double, bool>;
const Looks usual { false, 1, false };

/// A program on a machine with a bus, and a portal on that when the test starts it.
class DesktopAppearance : public ::testing::Test {
protected:
    void startPortal(const std::string& settings)
    {
        portal = std::make_unique<TestPortal>(*context, daemon.address(), settings);
    }

    void startProgram()
    {
        _service = nullptr;
        bus = std::make_shared<Bus>(context, daemon.address());
        settings = std::make_shared<PortalSettings>(bus, std::make_shared<FirstWait>(context));
        settings->ask();
        _service = std::make_unique<PortalAppearance>(settings);
        _service->setObserver([this] { ++changes; });
    }

    Looks looks() const { return { _service->isDark(), _service->textScale(), _service->isMotionReduced() }; }
    bool comes(const std::function<bool()>& isSo) { return comesTrue(*context, isSo); }

    Looks looksAtStart(const std::string& settings)
    {
        startPortal(settings);
        startProgram();
        return looks();
    }

    /// After the next change.
    Looks looksAfter(const std::string& group, const std::string& key, const std::string& value)
    {
        const int before = changes;
        portal->change(group, key, value);
        EXPECT_TRUE(comes([&] { return changes > before; }));
        return looks();
    }

    const std::shared_ptr<BusContext> context = std::make_shared<BusContext>();
    TestBus daemon;
    std::shared_ptr<Bus> bus;
    std::unique_ptr<TestPortal> portal;
    std::shared_ptr<PortalSettings> settings;
    int changes = 0;

private:
    std::unique_ptr<PortalAppearance> _service;
};

TEST_F(DesktopAppearance, AsUsualWithoutAPortal)
{
    startProgram();
    EXPECT_EQ(looks(), usual);
}

TEST_F(DesktopAppearance, EachIsReadAtTheStart)
{
    EXPECT_EQ(looksAtStart("{'org.freedesktop.appearance': {'color-scheme': <uint32 1>}}"), Looks(true, 1, false));
    EXPECT_EQ(
        looksAtStart("{'org.gnome.desktop.interface': {'text-scaling-factor': <1.25>}}"), Looks(false, 1.25, false));
    EXPECT_EQ(looksAtStart("{'org.gnome.desktop.interface': {'enable-animations': <false>}}"), Looks(false, 1, true));
    EXPECT_EQ(looksAtStart("{'org.freedesktop.appearance': {'reduced-motion': <uint32 1>}}"), Looks(false, 1, true));
}

TEST_F(DesktopAppearance, EachMeansNothingWhereTheUserHasNoWish)
{
    EXPECT_EQ(
        looksAtStart("{'org.freedesktop.appearance': {'color-scheme': <uint32 0>, 'reduced-motion': <uint32 0>},"
                     " 'org.gnome.desktop.interface': {'text-scaling-factor': <1.0>, 'enable-animations': <true>}}"),
        usual);
    EXPECT_EQ(
        looksAtStart("{'org.freedesktop.appearance': {'color-scheme': <uint32 2>, 'reduced-motion': <uint32 2>}}"),
        usual);
}

TEST_F(DesktopAppearance, EachIsFollowed)
{
    startPortal(noSettings);
    startProgram();
    ASSERT_EQ(looks(), usual);
    EXPECT_EQ(looksAfter(appearance, colorScheme, "uint32 1"), Looks(true, 1, false));
    EXPECT_EQ(looksAfter(interface, textScale, "1.5"), Looks(true, 1.5, false));
    EXPECT_EQ(looksAfter(interface, animations, "false"), Looks(true, 1.5, true));
    EXPECT_EQ(looksAfter(interface, animations, "true"), Looks(true, 1.5, false));
    EXPECT_EQ(looksAfter(appearance, reducedMotion, "uint32 1"), Looks(true, 1.5, true));
    EXPECT_EQ(looksAfter(appearance, reducedMotion, "uint32 0"), Looks(true, 1.5, false));
    EXPECT_EQ(looksAfter(interface, textScale, "1.0"), Looks(true, 1, false));
    EXPECT_EQ(looksAfter(appearance, colorScheme, "uint32 2"), usual);
    EXPECT_EQ(changes, 8);
}

TEST_F(DesktopAppearance, ChangeBeforeTheFirstAnswerIsNeeded)
{
    startPortal("{'org.gnome.desktop.interface': {'text-scaling-factor': <1.25>}}");
    startProgram();
    ASSERT_TRUE(comes([this] { return portal->questions() == 1; }));
    portal->change(appearance, colorScheme, "uint32 1");
    EXPECT_TRUE(comes([this] { return looks() == Looks(true, 1.25, false); }));
}

TEST_F(DesktopAppearance, ChangeBeforeAnAnswerThatDoesNotKnowOfIt)
{
    startPortal("{'org.gnome.desktop.interface': {'text-scaling-factor': <1.25>}}");
    portal->setBusy(true);
    startProgram();
    ASSERT_EQ(looks(), usual);
    ASSERT_EQ(portal->questions(), 1);
    EXPECT_EQ(looksAfter(appearance, colorScheme, "uint32 1"), Looks(true, 1, false));
    portal->setBusy(false);
    EXPECT_TRUE(comes([this] { return changes == 2; }));
    EXPECT_EQ(looks(), Looks(true, 1.25, false));
}

TEST_F(DesktopAppearance, ObserverHearsOfNothingElse)
{
    startPortal(noSettings);
    startProgram();
    ASSERT_EQ(looks(), usual);
    portal->change(appearance, colorScheme, "uint32 2");
    portal->change(interface, "cursor-size", "48");
    portal->change("org.gnome.desktop.other", colorScheme, "uint32 1");
    EXPECT_EQ(looksAfter(interface, textScale, "1.5"), Looks(false, 1.5, false));
    EXPECT_EQ(changes, 1);
}

TEST_F(DesktopAppearance, NobodyHearsOfWhatNobodyHasAskedFor)
{
    startPortal("{'org.freedesktop.appearance': {'color-scheme': <uint32 1>}}");
    startProgram();
    EXPECT_EQ(numberOf(settings->group(appearance), colorScheme), 1);
    context->takeIn();
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(looks(), Looks(true, 1, false));
}

TEST_F(DesktopAppearance, ValuesOfOtherTypesAndOutOfBounds)
{
    EXPECT_EQ(
        looksAtStart("{'org.freedesktop.appearance': {'color-scheme': <'dark'>, 'reduced-motion': <true>},"
                     " 'org.gnome.desktop.interface': {'text-scaling-factor': <'dark'>, 'enable-animations': <0>}}"),
        usual);
    EXPECT_EQ(looksAtStart("{'org.gnome.desktop.interface': {'text-scaling-factor': <nan>}}"), usual);
    EXPECT_EQ(
        looksAtStart("{'org.gnome.desktop.interface': {'text-scaling-factor': <0.0>}}"), Looks(false, 0.5, false));
    EXPECT_EQ(looksAtStart("{'org.gnome.desktop.interface': {'text-scaling-factor': <1e9>}}"), Looks(false, 3, false));
}

TEST_F(DesktopAppearance, PortalThatComesLater)
{
    startProgram();
    ASSERT_EQ(looks(), usual);
    startPortal("{'org.freedesktop.appearance': {'color-scheme': <uint32 1>, 'reduced-motion': <uint32 1>},"
                " 'org.gnome.desktop.interface': {'text-scaling-factor': <2.0>}}");
    EXPECT_TRUE(comes([this] { return changes > 0; }));
    EXPECT_EQ(looks(), Looks(true, 2, true));
    EXPECT_EQ(changes, 1);
}

TEST_F(DesktopAppearance, PortalThatAnswersTooLateIsHeardAllTheSame)
{
    startPortal("{'org.freedesktop.appearance': {'color-scheme': <uint32 1>}}");
    portal->setBusy(true);
    startProgram();
    EXPECT_EQ(looks(), usual);
    portal->setBusy(false);
    EXPECT_TRUE(comes([this] { return changes > 0; }));
    EXPECT_EQ(looks(), Looks(true, 1, false));
}

TEST_F(DesktopAppearance, PortalThatIsRestartedIsAskedAgainAndNotWaitedFor)
{
    ASSERT_EQ(looksAtStart("{'org.freedesktop.appearance': {'color-scheme': <uint32 1>}}"), Looks(true, 1, false));
    portal.reset();
    startPortal("{'org.gnome.desktop.interface': {'text-scaling-factor': <2.0>}}");
    portal->setBusy(true);
    ASSERT_TRUE(comes([this] { return portal->questions() == 1; }));
    const auto start = BusContext::Clock::now();
    EXPECT_EQ(looks(), Looks(true, 1, false));
    EXPECT_LT(BusContext::Clock::now() - start, FirstWait::longest / 2);
    portal->setBusy(false);
    EXPECT_TRUE(comes([this] { return changes > 0; }));
    EXPECT_EQ(looks(), Looks(false, 2, false));
}

TEST_F(DesktopAppearance, BusThatComesLaterIsAskedThen)
{
    daemon.kill();
    startProgram();
    ASSERT_EQ(looks(), usual);
    daemon.start();
    startPortal("{'org.freedesktop.appearance': {'color-scheme': <uint32 1>}}");
    bus->reopen();
    EXPECT_TRUE(comes([this] { return changes > 0; }));
    EXPECT_EQ(looks(), Looks(true, 1, false));
}

} // namespace
