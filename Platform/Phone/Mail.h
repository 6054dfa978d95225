#pragma once

#include <functional>
#include <string>
#include <vector>

/// A message that waits for the user to send it. Attachments are paths on the phone.
struct MailDraft {
    std::string recipient;
    std::string subject;
    std::string body;
    std::vector<std::string> attachments;
    /// Called from the main thread, after `compose` has given true, when no mail program has taken the draft after all.
    std::function<void()> onFailure = nullptr;
};

class Mail {
public:
    virtual ~Mail() = default;
    /// Shows the draft to the user; false when no mail program could be reached. Does not wait for one that starts.
    virtual bool compose(const MailDraft& draft) = 0;
    /// Whether what a draft attaches may leave the phone, so that the user is to see it before it is composed.
    virtual bool asksUserFirst() const { return false; }
};
