#pragma once

#include "PreferencesUI/PSSpecifier.h"

/// A page as a file of its bundle describes it: a property list with a "title" and "items", an item for each row.
struct PSPageDefinition {
    std::optional<std::string> title;
    Rows rows;
};

/// The page definition "<name>.plist" of the bundle that the target's class came from, its rows read and written by the
/// target. The file is parsed again only when it has changed; the rows are new ones at each call. Items that are no
/// dictionaries are left out; a file that cannot be read gives no title and no rows. Titles and footers are translated
/// in the application's own bundle.
PSPageDefinition loadPageDefinition(const std::string& name, const std::shared_ptr<NSObject>& target);
