#pragma once

#include "Linux/Desktop/PortalSettings.h"
#include "Linux/WaitBudget.h"

#include <QString>

/// The icon theme that the user chose for the desktop: the one that the portal tells of, else the one in the settings
/// file of the desktop or of GTK. Empty where nobody says. What it takes is counted.
QString chosenIconTheme(PortalSettings& portal, WaitBudget& budget);
