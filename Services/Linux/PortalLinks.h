#pragma once

#include "Linux/BusCaller.h"
#include "Phone/Links.h"

/// Opens links by way of the OpenURI portal. Only http and https links are opened.
class PortalLinks final : public Links {
public:
    explicit PortalLinks(BusCaller sessionBus)
        : _bus(std::move(sessionBus))
    {
    }

    // Links
    bool open(const std::string& url) override;

private:
    BusCaller _bus;
};
