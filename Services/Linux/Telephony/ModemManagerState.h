#pragma once

#include "Linux/Bus/ObjectCache.h"
#include "Linux/Telephony/SimCard.h"

#include <vector>

/// ModemManager's modems and the SIMs in their slots. Its object manager tells of the modems alone, so each SIM is
/// asked for when it is in a slot.
class ModemManagerState final : public ObjectCache {
public:
    ModemManagerState(std::shared_ptr<Bus> systemBus, std::shared_ptr<FirstWait> group);

    /// The SIMs in all slots of all modems, in slot order. A SIM whose ICCID is not known, as of some locked ones, is
    /// left out, because nothing could be kept for it.
    std::vector<SimCard> cards();

private:
    // ObjectCache
    void objectsChanged() override;

    void askForSim(const std::string& path);
};
