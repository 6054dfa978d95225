#include "Demo/DemoPhone.h"

#include "Demo/DemoDescription.h"
#include "Demo/DemoServices.h"

#include <filesystem>

namespace {

/// Makes the paths of a file absolute.
class Folder {
public:
    explicit Folder(const std::string& file)
    {
        std::error_code failure;
        _folder = std::filesystem::absolute(file, failure).parent_path();
    }

    std::string pathOf(const std::string& name) const { return (_folder / name).lexically_normal().string(); }

private:
    std::filesystem::path _folder;
};

} // namespace

Result<std::unique_ptr<DemoPhone>> DemoPhone::open(const std::string& file)
{
    auto description = readDemoDescription(file);
    if (!description)
        return description.failure();
    return std::unique_ptr<DemoPhone>(new DemoPhone(std::move(*description), file));
}

DemoPhone::DemoPhone(DemoDescription description, const std::string& file)
    : _mail(std::make_shared<DemoMail>())
    , _links(std::make_shared<DemoLinks>())
{
    const Folder folder(file);
    for (const std::string& photo : description.photos)
        _photos.push_back(folder.pathOf(photo));

    _phone.darwinNotifications = std::make_shared<DemoNotifications>();
    _phone.mail = _mail;
    _phone.links = _links;
    _phone.screenScale = description.scale;
    if (description.dark || description.textScale || description.reducedMotion)
        _phone.appearance = std::make_shared<DemoAppearance>(description.dark.value_or(false),
            description.textScale.value_or(1), description.reducedMotion.value_or(false));
    if (description.pairedDevices)
        _phone.pairedDevices = std::make_shared<DemoPairedDevices>(std::move(*description.pairedDevices));
    if (description.subscriptions)
        _phone.subscriptions = std::make_shared<DemoSubscriptions>(std::move(*description.subscriptions));
    if (description.homeScreen) {
        for (auto& [app, picture] : *description.homeScreen)
            picture = folder.pathOf(picture);
        _phone.homeScreen = std::make_shared<DemoHomeScreen>(std::move(*description.homeScreen), description.scale);
    }
}

const std::vector<MailDraft>& DemoPhone::drafts() const
{
    return _mail->drafts();
}

const std::vector<std::string>& DemoPhone::openedLinks() const
{
    return _links->urls();
}
