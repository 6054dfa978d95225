#pragma once

#include <string>

/// A SIM as a telephony daemon tells of it. What the daemon does not know is empty.
struct SimCard {
    /// The number that is printed on the card, digits alone. Never empty.
    std::string iccid;
    std::string ownNumber;
    /// MCC and MNC of the carrier that issued it, and its name as the card has it.
    std::string homeNetwork;
    std::string homeName;
    /// The network it is registered with, while that is the one at home.
    std::string registeredName;
    bool isDefaultVoice = false;
};

/// The digits of an ICCID as daemons give it, without the filler at its end; empty for anything else.
std::string plainIccid(const std::string& text);
/// The key of a SIM: a UUID made of its ICCID, the same in every slot and after every start.
std::string simKeyOf(const std::string& iccid);
