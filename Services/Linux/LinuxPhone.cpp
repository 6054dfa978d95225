#include "Linux/LinuxPhone.h"

#include "Linux/Bus/Bus.h"
#include "Linux/Bus/BusAddress.h"
#include "Linux/Desktop/ChosenIconTheme.h"
#include "Linux/Desktop/DesktopHomeScreen.h"
#include "Linux/Desktop/PortalLinks.h"
#include "Linux/Desktop/PortalMail.h"
#include "Linux/Desktop/SyslogLog.h"
#include "Linux/Desktop/UserFolders.h"
#include "Linux/Telephony/BluezDevices.h"
#include "Linux/Telephony/LinuxSubscriptions.h"

namespace {

constexpr const char* simNamesFile = "/tandem/sim-names";
constexpr const char* iconThemeSetting = "icon-theme";

} // namespace

LinuxPhone::LinuxPhone(HostPath hostPath)
    : _sessionBus(std::make_shared<Bus>(_context, sessionBusAddress()))
    , _systemBus(std::make_shared<Bus>(_context, systemBusAddress()))
    , _devices(std::make_shared<BluezDevices>(_systemBus, _firstWait))
    , _sims(std::make_shared<LinuxSubscriptions>(_systemBus, _firstWait, configurationFolders().front() + simNamesFile))
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
    _phone.homeScreen = std::make_shared<DesktopHomeScreen>();
    _phone.appIcons = std::make_shared<DesktopIcons>(dataFolders(), [settings] {
        return chosenIconTheme(textOf(settings->group(PortalSettings::interfaceGroup), iconThemeSetting));
    });
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
    _sessionBus->reopen();
    _systemBus->reopen();
    _context->takeIn();
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
