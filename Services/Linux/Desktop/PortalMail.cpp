#include "Linux/Desktop/PortalMail.h"

#include "Linux/Desktop/MailProgram.h"
#include "Linux/Desktop/Portal.h"

#include <algorithm>
#include <fcntl.h>
#include <numeric>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* emailInterface = "org.freedesktop.portal.Email";

/// Not waiting for who writes into it, where it is a pipe.
constexpr int openFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

/// Files that are open for reading.
class OpenFiles {
public:
    explicit OpenFiles(const std::vector<std::string>& files)
    {
        for (const std::string& file : files)
            _descriptors.push_back(::open(file.c_str(), openFlags));
    }
    OpenFiles(const OpenFiles&) = delete;
    OpenFiles& operator=(const OpenFiles&) = delete;
    ~OpenFiles() { std::ranges::for_each(_descriptors, ::close); }

    const std::vector<int>& descriptors() const { return _descriptors; }
    /// Whether all of them can be read and are regular files.
    bool areRegular() const { return std::ranges::all_of(_descriptors, isRegular); }

private:
    static bool isRegular(int descriptor)
    {
        struct stat status { };
        return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    }

    std::vector<int> _descriptors;
};

BusRequest composeRequest(const MailDraft& draft, const std::vector<int>& attachments)
{
    std::vector<std::int32_t> places(attachments.size());
    std::iota(places.begin(), places.end(), 0);
    const Variant options = Variant::ofProperties(
        { { "address", Variant::ofText(draft.recipient) }, { "subject", Variant::ofText(draft.subject) },
            { "body", Variant::ofText(draft.body) }, { "attachment_fds", Variant::ofFiles(places) } });
    BusRequest request =
        portalRequest(emailInterface, "ComposeEmail", Variant::ofTuple({ Variant::ofText(noParentWindow), options }));
    request.files = attachments;
    return request;
}

} // namespace

bool PortalMail::compose(const MailDraft& draft)
{
    std::vector<std::string> files;
    std::ranges::transform(draft.attachments, std::back_inserter(files), _hostPath);
    const OpenFiles attachments(files);
    if (!attachments.areRegular())
        return false;
    _requests->start(
        composeRequest(draft, attachments.descriptors()), [draft, files] { return mailCommand(draft, files); },
        draft.onFailure);
    return true;
}
