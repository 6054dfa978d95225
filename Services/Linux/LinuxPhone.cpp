#include "Linux/LinuxPhone.h"

#include "Linux/Bus/Bus.h"
#include "Linux/Bus/BusAddress.h"
#include "Linux/ChosenIconTheme.h"
#include "Linux/Desktop/PortalLinks.h"
#include "Linux/Desktop/PortalMail.h"
#include "Linux/Desktop/SyslogLog.h"
#include "Linux/DesktopHomeScreen.h"
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
    : _sessionBus(std::make_shared<Bus>(_context, sessionBusAddress()))
    , _systemBus(std::make_shared<Bus>(_context, systemBusAddress()))
    , _devices(std::make_shared<BluezDevices>(_systemBus, _firstWait))
    , _sims(std::make_shared<LinuxSubscriptions>(
          _systemBus, _firstWait, configurationFolders().constFirst().toStdString() + simNamesFile))
    , _application(windowlessApplication())
    , _notifications(std::make_shared<BusNotifications>(_sessionBus))
    , _requests(std::make_shared<DesktopRequests>(_sessionBus))
{
    // Asked before it is needed, because a page that is coloured waits for it.
    const auto settings = std::make_shared<PortalSettings>(_sessionBus, std::make_shared<FirstWait>(_context));
    settings->ask();
    _appearance = std::make_shared<PortalAppearance>(settings);

    _phone.systemLog = std::make_shared<SyslogLog>();
    _phone.darwinNotifications = _notifications;
    _phone.subscriptions = _sims;
    _phone.pairedDevices = _devices;
    _phone.homeScreen = std::make_shared<DesktopHomeScreen>(
        dataFolders(), [settings, budget = _budget] { return chosenIconTheme(*settings, *budget); }, _budget);
    _phone.appearance = _appearance;
    _phone.mail = std::make_shared<PortalMail>(_requests, std::move(hostPath));
    _phone.links = std::make_shared<PortalLinks>(_requests);
}

LinuxPhone::~LinuxPhone()
{
    _requests->finish();
    _notifications->flush();
}

void LinuxPhone::beginTurn()
{
    _budget->renew();
    _sessionBus->reopen();
    _systemBus->reopen();
    _context->takeIn();
    // A program with an event loop of its own has taken it in already.
    if (_application)
        QCoreApplication::processEvents();
}

void LinuxPhone::endTurn()
{
    waitForDaemons();
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
