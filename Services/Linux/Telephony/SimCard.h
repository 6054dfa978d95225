#pragma once

#include "Linux/BusCaller.h"

#include <QString>

#include <vector>

/// A SIM as a telephony daemon tells of it. What the daemon does not know is empty.
struct SimCard {
    /// The number that is printed on the card, digits alone. Never empty.
    QString iccid;
    QString ownNumber;
    /// MCC and MNC of the carrier that issued it, and its name as the card has it.
    QString homeNetwork;
    QString homeName;
    /// The network it is registered with, while that is the one at home.
    QString registeredName;
    bool isDefaultVoice = false;
};

/// The digits of an ICCID as daemons give it, without the filler at its end; empty for anything else.
QString plainIccid(const QString& text);

extern const char* const modemManagerService;
extern const char* const ofonoService;

/// The SIMs in all slots of all modems, in slot order. None while the daemon is absent or does not answer; a SIM whose
/// ICCID is not known, as of some locked ones, is left out, because nothing could be kept for it.
std::vector<SimCard> modemManagerSims(const BusCaller& systemBus);
std::vector<SimCard> ofonoSims(const BusCaller& systemBus);
