#pragma once

#include "PreferencesUI/PSSpecifier.h"

/// Asks the home screen for the icon of every row that stands for an app ("bundleIdentifier"), one request after
/// another, and keeps it as the row's "iconImage". A row whose app is not known stays without.
void fetchAppIcons(const Rows& rows);
