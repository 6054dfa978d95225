#include "Shared/HostSession.h"

#include "Foundation/NSNotificationCenter.h"
#include "Pictures/ModuleImages.h"
#include "Shared/BundleLoader.h"
#include "Shared/StderrLog.h"
#include "Shared/UserLanguages.h"
#include "Storage/StoredPropertyLists.h"
#include "UIKit/UIImage.h"
#include "libtandem/TDProduct.h"
#include "libtandem/TDSettings.h"

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// The name of the entry by which a Settings application opens the product.
constexpr const char* productEntry = "Pairo";

/// A parent that ignores it has its children ignore it too. The system then forgets with which status a process of ours
/// ended, and asking the package manager for the version fails.
void hearOfEndedProcesses()
{
    std::signal(SIGCHLD, SIG_DFL);
}

/// Points the link at the target, in place of what it pointed to. What is no link is left as it is. Several processes
/// may do this at once.
Result<void> refreshLink(const fs::path& link, const std::string& target)
{
    std::error_code code;
    if (fs::exists(fs::symlink_status(link, code)) && !fs::is_symlink(fs::symlink_status(link, code)))
        return {};
    if (fs::is_symlink(fs::symlink_status(link, code)) && fs::read_symlink(link, code) == target)
        return {};
    const fs::path fresh = link.string() + ".new" + std::to_string(getpid());
    fs::create_directories(link.parent_path(), code);
    if (!code)
        fs::remove(fresh, code);
    if (!code)
        fs::create_directory_symlink(target, fresh, code);
    if (!code)
        fs::rename(fresh, link, code);
    if (code)
        return Failure { link.string() + ": " + code.message(), code.value() };
    return {};
}

} // namespace

Result<std::unique_ptr<HostSession>> HostSession::open(const HostOptions& options, const PhoneDecorator& decorate)
{
    hearOfEndedProcesses();
    std::unique_ptr<HostSession> session(new HostSession);
    session->_options = options;
    session->_files = std::make_shared<DiskFiles>(options.root.empty() ? HostOptions::defaultRoot() : options.root);
    Phone phone;
    if (const auto opened = session->openPhone(phone); !opened)
        return opened.failure();

    phone.propertyLists = std::make_shared<StoredPropertyLists>();
    phone.files = session->_turnFiles = std::make_shared<TurnFiles>(
        session->_files, std::vector<std::string> { SettingsFile::path, TDProduct::bindingsPath() });
    phone.images = std::make_shared<ModuleImages>();
    phone.languages = userLanguages();
    if (decorate)
        decorate(phone);
    if (!phone.systemLog)
        phone.systemLog = std::make_shared<StderrLog>();
    if (phone.appearance)
        phone.appearance = session->_appearance = std::make_shared<ChosenAppearance>(phone.appearance);
    Phone::setCurrent(std::move(phone));

    session->_settingsFile = std::make_unique<SettingsFile>(session->_turnFiles);
    session->_companions = std::make_unique<CompanionFiles>(session->_files);
    if (const auto made = options.provision ? session->provision() : Result<void>(); !made)
        return made.failure();
    const auto principalClass = loadPrincipalClass(*session->_files, TDProduct::bundlePath());
    if (!principalClass)
        return principalClass.failure();
    session->_principalClass = *principalClass;
    return session;
}

HostSession::~HostSession()
{
    // Services that talk to the machine end before the libraries by which they talk.
    if (_linuxPhone)
        Phone::setCurrent({});
}

Result<void> HostSession::openPhone(Phone& phone)
{
    if (_options.phone == HostOptions::linuxPhone) {
        _linuxPhone =
            std::make_unique<LinuxPhone>([files = _files](const std::string& path) { return files->hostPath(path); });
        _linuxPhone->setAppearanceObserver([this] { appearanceChanged(); });
        _linuxPhone->setDataObserver([this] { dataChanged(); });
        phone = _linuxPhone->phone();
        return {};
    }
    auto demo = DemoPhone::open(_options.phone == HostOptions::demoPhone ? ownDemoPhone() : _options.phone);
    if (!demo)
        return demo.failure();
    _demoPhone = std::move(*demo);
    phone = _demoPhone->phone();
    return {};
}

Result<void> HostSession::provision()
{
    const std::string bundle = ownBundleDirectory();
    if (bundle.empty())
        return Failure { std::string(TDProduct::bundleName) + " is neither beside this program nor installed" };
    if (auto linked = refreshLink(_files->hostPath(TDProduct::bundlePath()), bundle); !linked)
        return linked;
    const bool locked = _settingsFile->lock();
    auto made = _settingsFile->provision();
    if (made)
        _notice = _settingsFile->repair();
    if (locked)
        _settingsFile->unlock();
    return made;
}

Result<void> HostSession::openRootPage(const std::shared_ptr<UIPresentationObserver>& observer, CGSize size)
{
    _root = _principalClass->allocAs<PSListController>();
    if (!_root)
        return Failure { _principalClass->name() + " is no page" };
    _navigation = std::make_shared<UINavigationController>();
    _navigation->setObserver(observer);
    _companions->note();
    return turn([&] {
        _root->initForContentSize(size);
        _root->setSpecifier(PSSpecifier::groupSpecifierWithName(productEntry));
        _navigation->pushViewController_animated(_root, false);
    });
}

Result<void> HostSession::turn(const std::function<void()>& act)
{
    const auto done = singleTurn(act);
    // What the page was the first to ask for may have come since.
    return _hasStaleData && done ? singleTurn([] {}) : done;
}

Result<void> HostSession::singleTurn(const std::function<void()>& act)
{
    const TurnEnd end { *this };
    if (_linuxPhone)
        _linuxPhone->beginTurn();
    _settingsFile->lock();
    _turnFiles->beginTurn();
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
        return Failure { rangeError.what() };
    }
    return {};
}

HostSession::TurnEnd::~TurnEnd()
{
    SettingsFile& file = *session._settingsFile;
    file.noteContent();
    session._companions->note();
    if (session._options.provision)
        file.keepGoodCopy();
    session._turnFiles->endTurn();
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
    NSNotificationCenter::defaultCenter().postNotificationName(TDProduct::settingsChangedNotification);
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
