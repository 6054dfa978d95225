#pragma once

#include "Linux/Bus/DaemonState.h"
#include "Linux/Telephony/SimCard.h"

#include <vector>

/// oFono's modems, with their SIMs and networks for as long as a modem offers these interfaces.
class OfonoState final : public DaemonState {
public:
    OfonoState(std::shared_ptr<Bus> systemBus, std::shared_ptr<FirstWait> group);

    /// The SIMs of all modems, in the order of the modems. A SIM whose ICCID is not known is left out.
    std::vector<SimCard> cards();

private:
    // DaemonState
    void listen() override;
    void request() override;

    void takeModems(const Variant& modems);
    void setModem(const std::string& path, BusProperties properties);
    void removeModem(const std::string& path);
    void takeVoiceSim(const Variant& subscriber);
    void changeProperty(const BusSignal& heard);
    /// Asks for what the modem has begun to offer, and forgets what it offers no longer.
    void followInterfaces(const std::string& modem);
    void askForProperties(const std::string& modem, const char* interface);
};
