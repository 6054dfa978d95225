#pragma once

#include <QStringList>

/// The folders of the user and, after them, those of the system, as $XDG_... name them or as they are where it does
/// not.
QStringList dataFolders();
QStringList configurationFolders();
