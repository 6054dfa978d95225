#pragma once

#include <functional>
#include <string>

/// Opens links in the user's browser.
class Links {
public:
    virtual ~Links() = default;
    /// False when the link cannot be opened. Does not wait for a browser that starts. `onFailure` is called from the
    /// main thread, after this has given true, when no browser has opened the link after all; null for nobody.
    virtual bool open(const std::string& url, std::function<void()> onFailure) = 0;
};
