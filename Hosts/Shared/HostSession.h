#pragma once

#include "Demo/DemoPhone.h"
#include "Linux/LinuxPhone.h"
#include "Phone/Phone.h"
#include "PreferencesUI/PSListController.h"
#include "Shared/ChosenAppearance.h"
#include "Shared/CompanionFiles.h"
#include "Shared/HostOptions.h"
#include "Shared/SettingsFile.h"
#include "UIKit/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A host's way to the pages: the phone, the bundle, the root page on a navigation stack, and the turns in which events
/// are handed to the pages. One a process.
class HostSession {
public:
    /// The host's chance to stand before a service, as to show what the pages post and log.
    using PhoneDecorator = std::function<void(Phone&)>;

    ~HostSession();

    /// Opens the phone and loads the bundle. The result is never null.
    static Result<std::unique_ptr<HostSession>> open(const HostOptions& options, const PhoneDecorator& decorate);

    /// Makes the root page and puts it on the stack, observed by the host. Fails when its rows cannot be built.
    Result<void> openRootPage(const std::shared_ptr<UIPresentationObserver>& observer, CGSize size);

    /// One turn: takes the settings lock, catches up with changes by other processes, acts, keeps the last good copy,
    /// releases the lock, and drains what the platform holds for a turn. The list's range error leaves the page as it
    /// was: it is logged, and the turn fails with its text. Other exceptions of `act` go on to the caller.
    Result<void> turn(const std::function<void()>& act);

    /// Waits until there is something to read from the descriptor, or it has ended, for a host whose events come from
    /// there. What the machine's services have to do meanwhile is done.
    void waitUntilReadable(int descriptor);

    UINavigationController& navigation() { return *_navigation; }
    std::shared_ptr<PSListController> rootPage() const { return _root; }
    /// Null on another phone.
    DemoPhone* demoPhone() { return _demoPhone.get(); }
    /// The files of the phone's photo library; none on another phone than the demo phone.
    std::vector<std::string> photos() const { return _demoPhone ? _demoPhone->photos() : std::vector<std::string>(); }
    const std::shared_ptr<DiskFiles>& files() const { return _files; }
    /// Builds the rows anew when another process has changed a binding or a logo since they were last built so. Called
    /// in a turn, at a moment when the rows may move.
    void showCompanions();
    /// The folders on this machine in which other processes change what the pages show. They need not be there.
    std::vector<std::string> watchedFolders() const { return _companions->hostFolders(); }
    const Class& principalClass() const { return *_principalClass; }
    /// What the user is to be told once, as that a damaged file was replaced; absent for nothing.
    const std::optional<std::string>& notice() const { return _notice; }

    /// Called after something that the phone's appearance tells has changed, when the pages have been told.
    void setAppearanceObserver(std::function<void()> observer) { _appearanceObserver = std::move(observer); }
    /// Called when devices or SIMs that a page may show have changed. The next turn, or the one under way, builds the
    /// rows of that page anew.
    void setDataObserver(std::function<void()> observer) { _dataObserver = std::move(observer); }
    /// For an event loop that is to wait for the phone's buses too; null on a phone without any.
    BusContext* busContext() { return _linuxPhone ? &_linuxPhone->busContext() : nullptr; }
    /// From now on the pages are dark, or light, whatever the system's appearance is. False on a phone without one.
    bool setDarkAppearance(bool dark);

private:
    /// What a turn ends with, however it ends.
    struct TurnEnd {
        HostSession& session;
        ~TurnEnd();
    };

    HostSession() = default;

    Result<void> singleTurn(const std::function<void()>& act);
    Result<void> openPhone(Phone& phone);
    void appearanceChanged();
    void dataChanged();
    /// Builds the rows anew of the page that shows devices or SIMs, when these have changed.
    void showData();
    Result<void> provision();
    void catchUp();
    void reloadPages();

    HostOptions _options;
    std::shared_ptr<DiskFiles> _files;
    std::shared_ptr<TurnFiles> _turnFiles;
    /// One of the two, as the user chose.
    std::unique_ptr<DemoPhone> _demoPhone;
    std::unique_ptr<LinuxPhone> _linuxPhone;
    /// Null on a phone without an appearance.
    std::shared_ptr<ChosenAppearance> _appearance;
    std::unique_ptr<SettingsFile> _settingsFile;
    std::unique_ptr<CompanionFiles> _companions;
    bool _hasStaleCompanions = false;
    const Class* _principalClass = nullptr;
    std::shared_ptr<UINavigationController> _navigation;
    std::shared_ptr<PSListController> _root;
    std::optional<std::string> _notice;
    std::function<void()> _appearanceObserver;
    std::function<void()> _dataObserver;
    /// The page that last asked for devices or SIMs.
    std::weak_ptr<UIViewController> _dataPage;
    bool _hasStaleData = false;
};
