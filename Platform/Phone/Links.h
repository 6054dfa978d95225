#pragma once

#include <string>

/// Opens links in the user's browser.
class Links {
public:
    virtual ~Links() = default;
    virtual bool open(const std::string& url) = 0;
};
