#include "Linux/BusNotifications.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

constexpr int patienceMilliseconds = 60'000;
constexpr std::size_t many = 10'000;

/// A bus of the test's own, with two clients on it.
class NotificationBus : public ::testing::Test {
protected:
    NotificationBus()
    {
        _daemon.setStandardErrorFile(QProcess::nullDevice());
        _daemon.start(QStringLiteral("dbus-daemon"),
            { QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address") });
        while (!_daemon.canReadLine() && _daemon.waitForReadyRead(patienceMilliseconds)) { }
        const QString address = QString::fromUtf8(_daemon.readLine()).trimmed();
        poster = std::make_unique<BusNotifications>(clientOf(address, "poster"));
        listener = std::make_unique<BusNotifications>(clientOf(address, "listener"));
    }
    ~NotificationBus() override
    {
        poster.reset();
        listener.reset();
        for (const char* name : { "poster", "listener" })
            QDBusConnection::disconnectFromBus(QLatin1String(name));
        _daemon.kill();
        _daemon.waitForFinished();
    }

    static BusCaller clientOf(const QString& address, const char* name)
    {
        return { QDBusConnection::connectToBus(address, QLatin1String(name)), std::make_shared<WaitBudget>() };
    }

    /// Takes in what comes until there are so many names.
    static void waitFor(const std::vector<std::string>& names, std::size_t count)
    {
        bool isLate = false;
        QTimer alarm;
        alarm.setSingleShot(true);
        QObject::connect(&alarm, &QTimer::timeout, [&] { isLate = true; });
        alarm.start(patienceMilliseconds);
        while (names.size() < count && !isLate)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    std::unique_ptr<BusNotifications> poster;
    std::unique_ptr<BusNotifications> listener;

private:
    int _count = 1;
    char _name[5] = "test";
    char* _words[2] = { _name, nullptr };
    QCoreApplication _application { _count, _words };
    QProcess _daemon;
};

TEST_F(NotificationBus, TenThousandAreDeliveredInOrderToTheListenerAndToThePoster)
{
    std::vector<std::string> heard;
    std::vector<std::string> heardByPoster;
    std::vector<std::string> expected;
    listener->addObserverOfAll([&](const std::string& name) { heard.push_back(name); });
    poster->addObserverOfAll([&](const std::string& name) { heardByPoster.push_back(name); });
    listener->flush();
    poster->flush();
    for (std::size_t i = 0; i < many; ++i) {
        expected.push_back("n" + std::to_string(i));
        poster->post(expected.back());
    }
    waitFor(heard, many);
    waitFor(heardByPoster, many);
    EXPECT_EQ(heard, expected);
    EXPECT_EQ(heardByPoster, expected);
}

TEST_F(NotificationBus, ObserversHearTheirNameAndNoOther)
{
    std::vector<std::string> heard;
    for (const char* name : { "a", "b", "a", "with 'quotes'" })
        listener->addObserver(name, [&](const std::string& posted) { heard.push_back(posted); });
    listener->flush();
    for (const char* name : { "c", "b", "a", "with 'quotes'", "b" })
        poster->post(name);
    waitFor(heard, 5);
    EXPECT_EQ(heard, (std::vector<std::string> { "b", "a", "a", "with 'quotes'", "b" }));
}

TEST(Notifications, WithoutABusNothingHappens)
{
    BusNotifications notifications({ QDBusConnection(QStringLiteral("none")), std::make_shared<WaitBudget>() });
    notifications.addObserver("a", nullptr);
    notifications.addObserverOfAll(nullptr);
    notifications.post("a");
    notifications.flush();
    EXPECT_FALSE(notifications.isConnected());
}

} // namespace
