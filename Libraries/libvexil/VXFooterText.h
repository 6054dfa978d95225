#pragma once

#include <functional>
#include <string>

/// The footer of a product's pages in that year, as `ask` gives it. All pages of a product show the same footer, and
/// finding the version that it names takes a process. So `ask` is called for the first page that shows its footer, and
/// again only in another year or when the machine's package database has changed.
std::string sharedFooterText(const std::string& product, long year, const std::function<std::string(long)>& ask);
