#include "Linux/LinuxPhone.h"

#include "Linux/Bus/Bus.h"
#include "Linux/Bus/BusAddress.h"
#include "Linux/ChosenIconTheme.h"
#include "Linux/DesktopHomeScreen.h"
#include "Linux/PortalLinks.h"
#include "Linux/PortalMail.h"
#include "Linux/SyslogLog.h"
#include "Linux/Telephony/BluezDevices.h"
#include "Linux/Telephony/LinuxSubscriptions.h"
#include "Linux/UserFolders.h"

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <clocale>
#include <iostream>

namespace {

constexpr const char* simNamesFile = "/tandem/sim-names";

void keepQuiet(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::cerr << text.toStdString() << std::endl;
}

} // namespace

std::unique_ptr<QCoreApplication> windowlessApplication()
{
    if (QCoreApplication::instance())
        return nullptr;
    // What the libraries find remarkable about the machine is nothing that a page tells of.
    qInstallMessageHandler(keepQuiet);
    static char program[] = "tandem";
    static char option[] = "-platform";
    static char platform[] = "offscreen";
    // The application takes the words that it knows out of the list.
    static char* words[4];
    static int count;
    std::ranges::copy(std::array<char*, 4> { program, option, platform, nullptr }, words);
    count = 3;
    auto application = std::make_unique<QGuiApplication>(count, words);
    // It has taken the user's locale over; numbers are read and written as before.
    std::setlocale(LC_NUMERIC, "C");
    return application;
}

LinuxPhone::LinuxPhone(HostPath hostPath)
    : _systemBus(std::make_shared<Bus>(_context, systemBusAddress()))
    , _devices(std::make_shared<BluezDevices>(_systemBus, _firstWait))
    , _sims(std::make_shared<LinuxSubscriptions>(
          _systemBus, _firstWait, configurationFolders().constFirst().toStdString() + simNamesFile))
    , _application(windowlessApplication())
{
    const BusCaller session(sessionBus, _budget);
    _notifications = std::make_shared<BusNotifications>(session);
    const auto settings = std::make_shared<PortalSettings>(session);
    _appearance = std::make_shared<PortalAppearance>(settings);

    _phone.systemLog = std::make_shared<SyslogLog>();
    _phone.darwinNotifications = _notifications;
    _phone.subscriptions = _sims;
    _phone.pairedDevices = _devices;
    _phone.homeScreen = std::make_shared<DesktopHomeScreen>(
        dataFolders(), [settings, budget = _budget] { return chosenIconTheme(*settings, *budget); }, _budget);
    _phone.appearance = _appearance;
    const auto acts = std::make_shared<BackgroundActs>(_budget);
    _phone.mail = std::make_shared<PortalMail>(session, acts, std::move(hostPath));
    _phone.links = std::make_shared<PortalLinks>(session, acts);
}

LinuxPhone::~LinuxPhone()
{
    _budget->renew();
    _notifications->flush();
}

void LinuxPhone::beginTurn()
{
    _budget->renew();
    _systemBus->reopen();
    _context->takeIn();
    // A program with an event loop of its own has taken it in already.
    if (_application)
        QCoreApplication::processEvents();
}

void LinuxPhone::endTurn()
{
    waitForDaemons();
    _notifications->flush();
}

void LinuxPhone::waitForDaemons()
{
    const auto isAwaited = [this] { return _devices->isAwaited() || _sims->isAwaited(); };
    if (!isAwaited())
        return;
    _firstWait->until([&isAwaited] { return !isAwaited(); });
    _context->takeIn();
}

void LinuxPhone::setDataObserver(std::function<void()> observer)
{
    _devices->setObserver(observer);
    _sims->setObserver(std::move(observer));
}

bool LinuxPhone::wereDataGiven()
{
    const bool wereDevicesGiven = _devices->wereGiven();
    return _sims->wereGiven() || wereDevicesGiven;
}
