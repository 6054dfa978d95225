#pragma once

#include "PreferencesUI/PSListController.h"

class TDRootListController;

/// The root page, which owns the settings: the page itself or the nearest one above it. Null for a page that was opened
/// without a root page, and for null.
std::shared_ptr<TDRootListController> tandemSettingsController(const std::shared_ptr<PSListController>& page);
