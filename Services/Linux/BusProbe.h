#pragma once

#include <QString>

/// The first of the bus's addresses ("unix:path=...;...") at which a bus lets us in and gives us a name, found out
/// without waiting for long; empty when there is none. The bus library would wait for a bus that hangs for as long as
/// that takes, and the whole program with it.
///
/// Addresses are those of sockets of this machine, and of tcp with a host that needs no looking up. Others are not
/// tried: some start programs, and a host's name may take its time.
QString addressThatAnswers(const QString& addresses);
