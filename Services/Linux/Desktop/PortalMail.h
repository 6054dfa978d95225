#pragma once

#include "Linux/Desktop/DesktopRequests.h"
#include "Phone/Mail.h"

#include <functional>
#include <memory>
#include <string>

/// Hands drafts to the user's mail program by way of the email portal or, where there is none or it refuses, of
/// xdg-email. A draft that the portal may still show is not handed to another program.
class PortalMail final : public Mail {
public:
    /// Where a path of the phone lies on this machine.
    using HostPath = std::function<std::string(const std::string&)>;

    PortalMail(std::shared_ptr<DesktopRequests> requests, HostPath hostPath)
        : _requests(std::move(requests))
        , _hostPath(std::move(hostPath))
    {
    }

    // Mail
    /// False when an attachment cannot be read, or is no regular file.
    bool compose(const MailDraft& draft) override;
    bool asksUserFirst() const override { return true; }

private:
    std::shared_ptr<DesktopRequests> _requests;
    HostPath _hostPath;
};
