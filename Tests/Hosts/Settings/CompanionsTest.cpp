#include "WindowTest.h"

#include <QDir>
#include <QElapsedTimer>

namespace {

constexpr int patienceMilliseconds = 10'000;
const QString personal = QStringLiteral("6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");

} // namespace

/// What other programs change besides the settings, while the page that shows it is open.
class CompanionsTest : public WindowTest {
protected:
    void elsewhere(const QStringList& words)
    {
        QProcess other;
        other.start(QStringLiteral(TANDEM_DRIVER), QStringList { "--root", _root.path() } + words);
        ASSERT_TRUE(other.waitForFinished());
        ASSERT_EQ(other.exitCode(), 0) << other.readAllStandardError().toStdString();
    }
    static bool becomes(const std::function<bool()>& isSo)
    {
        QElapsedTimer watch;
        watch.start();
        while (!isSo() && watch.elapsed() < patienceMilliseconds)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        return isSo();
    }
    QString firstDevice() { return page().identifier(0); }
};

TEST_F(CompanionsTest, BindingOfADevice)
{
    openWindow();
    openPage("Bluetooth");
    const int rows = page().rowCount();
    const QString device = firstDevice();
    elsewhere({ "set", "bluetooth", device, "on" });
    EXPECT_TRUE(becomes([&] { return page().rowCount() > rows; }));
    ASSERT_TRUE(item(device));
    EXPECT_TRUE(item(device)->isChecked());
    elsewhere({ "set", "bluetooth", device, "off" });
    EXPECT_TRUE(becomes([&] { return page().rowCount() == rows; }));
    EXPECT_FALSE(item(device)->isChecked());
}

TEST_F(CompanionsTest, BindingsAreNotBuiltAnewForOwnChanges)
{
    openWindow();
    openPage("Bluetooth");
    item(firstDevice())->activate();
    settle();
    _events->take();
    host().turn([this] { host().session().showCompanions(); });
    EXPECT_EQ(_events->take(), Json::array());
}

TEST_F(CompanionsTest, LogoOfACarrier)
{
    openWindow();
    openPage("TDSimSettingsController");
    ASSERT_EQ(indexOf("LOGO"), -1);
    const QString folder = _root.path() + "/var/mobile/Library/Preferences/Tandem";
    const bool made = QDir().mkpath(folder);
    ASSERT_TRUE(made);
    QImage logo(29, 29, QImage::Format_RGB32);
    logo.fill(Qt::red);
    ASSERT_TRUE(logo.save(folder + "/" + personal + ".png"));
    EXPECT_TRUE(becomes([this] { return indexOf("LOGO") >= 0; }));
    ASSERT_TRUE(QFile::remove(folder + "/" + personal + ".png"));
    EXPECT_TRUE(becomes([this] { return indexOf("LOGO") < 0; }));
}
