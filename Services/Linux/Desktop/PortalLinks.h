#pragma once

#include "Linux/Desktop/DesktopRequests.h"
#include "Phone/Links.h"

#include <memory>
#include <string>

/// Opens links by way of the OpenURI portal or, where there is none or it refuses, in the browser that the user chose.
/// Only http and https links are opened.
class PortalLinks final : public Links {
public:
    explicit PortalLinks(std::shared_ptr<DesktopRequests> requests)
        : _requests(std::move(requests))
    {
    }

    // Links
    bool open(const std::string& url, std::function<void()> onFailure) override;

private:
    std::shared_ptr<DesktopRequests> _requests;
};
