#pragma once

#include <QString>

/// Whether somebody answers at one of the bus's addresses ("unix:path=...;..."), found out without waiting for long:
/// the bus library would wait for a bus that hangs for as long as that takes. Addresses other than of sockets of this
/// machine are taken to answer.
bool doesBusAnswer(const QString& addresses);
