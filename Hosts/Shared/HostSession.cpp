#include "Shared/HostSession.h"

#include "Foundation/NSNotificationCenter.h"
#include "Pictures/QtImages.h"
#include "Shared/BundleLoader.h"
#include "Shared/StderrLog.h"
#include "Storage/LibplistPropertyLists.h"
#include "UIKit/UIImage.h"
#include "libtandem/TDSettings.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr const char* settingsChangedNotification = "com.vexil.tandemSettingsChanged";
/// The name of the entry by which a Settings application opens the product.
constexpr const char* productEntry = "Pairo";

/// "de-DE" and "de" for "de_DE.UTF-8"; none for the C locale.
std::vector<std::string> userLanguages()
{
    for (const char* name : { "LC_ALL", "LC_MESSAGES", "LANG" }) {
        const char* value = std::getenv(name);
        if (!value || !*value)
            continue;
        std::string language(value);
        language.erase(std::min(language.find_first_of(".@"), language.size()));
        if (language == "C" || language == "POSIX")
            return {};
        const std::size_t underscore = language.find('_');
        if (underscore == std::string::npos)
            return { language };
        std::string bare = language.substr(0, underscore);
        language[underscore] = '-';
        return { language, bare };
    }
    return {};
}

/// Points the link at the target, in place of what it pointed to.
bool refreshLink(const fs::path& link, const std::string& target, std::string& error)
{
    std::error_code code;
    if (fs::exists(fs::symlink_status(link, code)) && !fs::is_symlink(fs::symlink_status(link, code)))
        return true;
    if (fs::is_symlink(fs::symlink_status(link, code)) && fs::read_symlink(link, code) == target)
        return true;
    const fs::path fresh = link.string() + ".new";
    fs::create_directories(link.parent_path(), code);
    if (!code)
        fs::remove(fresh, code);
    if (!code)
        fs::create_directory_symlink(target, fresh, code);
    if (!code)
        fs::rename(fresh, link, code);
    if (code)
        error = link.string() + ": " + code.message();
    return !code;
}

} // namespace

std::unique_ptr<HostSession> HostSession::open(
    const HostOptions& options, const PhoneDecorator& decorate, std::string& error)
{
    std::unique_ptr<HostSession> session(new HostSession);
    session->_options = options;
    session->_files = std::make_shared<DiskFiles>(options.root.empty() ? HostOptions::defaultRoot() : options.root);
    Phone phone;
    if (!session->openPhone(phone, error))
        return nullptr;

    phone.propertyLists = std::make_shared<LibplistPropertyLists>();
    phone.files = session->_files;
    phone.images = std::make_shared<QtImages>();
    if (!phone.systemLog)
        phone.systemLog = std::make_shared<StderrLog>();
    phone.languages = userLanguages();
    if (decorate)
        decorate(phone);
    if (phone.appearance)
        phone.appearance = session->_appearance = std::make_shared<ChosenAppearance>(phone.appearance);
    Phone::setCurrent(std::move(phone));

    session->_settingsFile = std::make_unique<SettingsFile>(session->_files);
    session->_companions = std::make_unique<CompanionFiles>(session->_files);
    if (options.provision && !session->provision(error))
        return nullptr;
    session->_principalClass = loadPrincipalClass(*session->_files, pluginBundlePath, error);
    return session->_principalClass ? std::move(session) : nullptr;
}

HostSession::~HostSession()
{
    // Services that talk to the machine end before the libraries by which they talk.
    if (_linuxPhone)
        Phone::setCurrent({});
}

bool HostSession::openPhone(Phone& phone, std::string& error)
{
    if (_options.phone == HostOptions::linuxPhone) {
        _linuxPhone =
            std::make_unique<LinuxPhone>([files = _files](const std::string& path) { return files->hostPath(path); });
        _linuxPhone->setAppearanceObserver([this] { appearanceChanged(); });
        _linuxPhone->setDataObserver([this] { dataChanged(); });
        phone = _linuxPhone->phone();
        return true;
    }
    _demoPhone = DemoPhone::open(_options.phone == HostOptions::demoPhone ? ownDemoPhone() : _options.phone, error);
    if (_demoPhone)
        phone = _demoPhone->phone();
    return _demoPhone != nullptr;
}

bool HostSession::provision(std::string& error)
{
    const std::string bundle = ownBundleDirectory();
    if (bundle.empty()) {
        error = "TandemPreferences.bundle is neither beside this program nor installed";
        return false;
    }
    if (!refreshLink(_files->hostPath(pluginBundlePath), bundle, error))
        return false;
    const bool locked = _settingsFile->lock();
    const bool made = _settingsFile->provision(error);
    if (made)
        _notice = _settingsFile->repair();
    if (locked)
        _settingsFile->unlock();
    return made;
}

bool HostSession::openRootPage(const std::shared_ptr<UIPresentationObserver>& observer, CGSize size, std::string& error)
{
    _root = _principalClass->allocAs<PSListController>();
    if (!_root) {
        error = _principalClass->name() + " is no page";
        return false;
    }
    _navigation = std::make_shared<UINavigationController>();
    _navigation->setObserver(observer);
    const auto failure = turn([&] {
        _root->initForContentSize(size);
        _root->setSpecifier(PSSpecifier::groupSpecifierWithName(productEntry));
        _navigation->pushViewController_animated(_root, false);
    });
    error = failure.value_or(std::string());
    return !failure;
}

std::optional<std::string> HostSession::turn(const std::function<void()>& act)
{
    const auto failure = singleTurn(act);
    // What the page was the first to ask for may have come since.
    return _hasStaleData && !failure ? singleTurn([] {}) : failure;
}

std::optional<std::string> HostSession::singleTurn(const std::function<void()>& act)
{
    const TurnEnd end { *this };
    if (_linuxPhone)
        _linuxPhone->beginTurn();
    _settingsFile->lock();
    try {
        if (_companions->hasChanged())
            _hasStaleCompanions = true;
        if (_settingsFile->hasChanged() && !_navigation->viewControllers().empty())
            catchUp();
        showData();
        act();
    } catch (const std::out_of_range& rangeError) {
        if (const auto& log = Phone::current().systemLog)
            log->write(rangeError.what());
        return rangeError.what();
    }
    return std::nullopt;
}

HostSession::TurnEnd::~TurnEnd()
{
    SettingsFile& file = *session._settingsFile;
    file.noteContent();
    session._companions->note();
    if (session._options.provision)
        file.keepGoodCopy();
    file.unlock();
    UIGraphicsDrainImageContexts();
    if (!session._linuxPhone)
        return;
    if (session._linuxPhone->wereDataGiven())
        session._dataPage = session._navigation->topViewController();
    session._linuxPhone->endTurn();
}

void HostSession::waitUntilReadable(int descriptor)
{
    // Reading waits too.
    if (_linuxPhone)
        _linuxPhone->waitUntilReadable(descriptor);
}

void HostSession::catchUp()
{
    TDSettings::sharedSettings()->reloadSettings();
    NSNotificationCenter::defaultCenter().postNotificationName(settingsChangedNotification);
    reloadPages();
}

void HostSession::showCompanions()
{
    if (_hasStaleCompanions)
        reloadPages();
}

void HostSession::reloadPages()
{
    _hasStaleCompanions = false;
    for (const auto& controller : _navigation->viewControllers()) {
        if (const auto page = std::dynamic_pointer_cast<PSListController>(controller))
            page->reloadSpecifiers();
    }
}

bool HostSession::setDarkAppearance(bool dark)
{
    if (!_appearance)
        return false;
    _appearance->setDark(dark);
    appearanceChanged();
    return true;
}

void HostSession::appearanceChanged()
{
    if (!_navigation)
        return;
    for (const auto& controller : _navigation->viewControllers())
        controller->traitCollectionDidChange();
    if (_appearanceObserver)
        _appearanceObserver();
}

void HostSession::dataChanged()
{
    _hasStaleData = true;
    if (_dataObserver)
        _dataObserver();
}

void HostSession::showData()
{
    if (!std::exchange(_hasStaleData, false))
        return;
    const auto page = std::dynamic_pointer_cast<PSListController>(_dataPage.lock());
    if (page && page->navigationController())
        page->reloadSpecifiers();
}
