#pragma once

#include "Linux/BusCaller.h"
#include "Phone/Mail.h"

#include <functional>

/// Hands drafts to the user's mail program by way of the email portal or, where there is none, of xdg-email.
class PortalMail final : public Mail {
public:
    /// Where a path of the phone lies on this machine.
    using HostPath = std::function<std::string(const std::string&)>;

    PortalMail(BusCaller sessionBus, HostPath hostPath)
        : _bus(std::move(sessionBus))
        , _hostPath(std::move(hostPath))
    {
    }

    // Mail
    bool compose(const MailDraft& draft) override;
    bool asksUserFirst() const override { return true; }

private:
    BusCaller _bus;
    HostPath _hostPath;
};
