#pragma once

#include "Phone/Phone.h"
#include "Phone/Result.h"

#include <memory>
#include <string>
#include <vector>

class DemoLinks;
class DemoMail;
struct DemoDescription;

/// A phone that one JSON file describes, for a first look and for tests:
///
///     { "appearance": "light" or "dark", "textScale": 1.5, "reducedMotion": true, "scale": 2,
///       "subscriptions": [{ "uuid", "label", "phoneNumber", "carrier", "userDefaultVoice" }],
///       "pairedDevices": [{ "name", "address" }],
///       "homeScreen": { app: picture file }, "photos": [picture file] }
///
/// A service whose key is missing or null is missing on the phone; the first three keys are one service. Names of
/// picture files are relative to that file; they are read when they are asked for, so a phone is there at once.
class DemoPhone {
public:
    /// Fails with what is wrong and where, when the file does not describe a phone.
    static Result<std::unique_ptr<DemoPhone>> open(const std::string& file);

    /// Without property lists, files, images, system log and text measure, which the caller adds. Its services are the
    /// same at each call, and live on when this object is gone.
    Phone phone() const { return _phone; }

    /// Absolute paths, in the file's order. Whether there are such files has not been looked at.
    const std::vector<std::string>& photos() const { return _photos; }
    /// What was handed to the mail program, oldest first.
    const std::vector<MailDraft>& drafts() const;
    /// What was handed to the browser, oldest first.
    const std::vector<std::string>& openedLinks() const;

private:
    DemoPhone(DemoDescription description, const std::string& file);

    Phone _phone;
    std::shared_ptr<DemoMail> _mail;
    std::shared_ptr<DemoLinks> _links;
    std::vector<std::string> _photos;
};
