#include "Demo/DemoServices.h"

#include "Demo/DemoFile.h"
#include "Demo/PhoneNumberGroups.h"
#include "Foundation/NSKeyedArchiver.h"
#include "Storage/DiskFiles.h"
#include "UIKit/UIImage.h"

namespace {

constexpr const char* machineRoot = "/";
constexpr std::size_t largestPicture = 16U << 20U;

} // namespace

std::string DemoSubscriptions::formattedNumber(const std::string& number) const
{
    return groupedPhoneNumber(number);
}

Value DemoHomeScreen::ask(const std::string& service, const std::string& message, const Value& userInfo)
{
    const auto* app = userInfo[AppIconRequest::data].string();
    if (service != AppIconRequest::service || message != AppIconRequest::message || !app)
        return {};
    const Value icon = archivedIcon(*app);
    return icon.isNull() ? Value() : Value(Dictionary { { AppIconRequest::data, icon } });
}

Value DemoHomeScreen::archivedIcon(const std::string& app)
{
    const auto picture = _pictures.find(app);
    if (picture == _pictures.end())
        return {};
    const std::string& file = picture->second;
    return _archives.get(file, DiskFiles(machineRoot).stamp(file), [&] { return archiveOfPicture(file); });
}

Value DemoHomeScreen::archiveOfPicture(const std::string& file) const
{
    auto bytes = contentOfFile(file, largestPicture);
    const auto icon = bytes ? UIImage::imageWithData(std::move(*bytes), _scale) : nullptr;
    auto archive = icon ? NSKeyedArchiver::archivedDataWithRootObject(icon) : std::nullopt;
    return archive ? Value(std::move(*archive)) : Value();
}

void DemoNotifications::post(const std::string& name)
{
    _pending.push_back(name);
    if (_pending.size() > 1)
        return;
    while (!_pending.empty()) {
        deliver(_pending.front());
        _pending.pop_front();
    }
}

void DemoNotifications::deliver(const std::string& name)
{
    // Observers that are added meanwhile begin with the next one.
    const std::size_t count = _observers.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto [observed, handler] = _observers[i];
        if (observed == name && handler)
            handler(name);
    }
}

void DemoNotifications::addObserver(const std::string& name, Handler handler)
{
    _observers.emplace_back(name, std::move(handler));
}

bool DemoMail::compose(const MailDraft& draft)
{
    _drafts.push_back(draft);
    return true;
}

bool DemoLinks::open(const std::string& url, std::function<void()> /*onFailure*/)
{
    _urls.push_back(url);
    return true;
}
