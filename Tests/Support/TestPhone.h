#pragma once

#include "Pictures/ModuleImages.h"
#include "PreferencesUI/PSListController.h"
#include "Storage/DiskFiles.h"
#include "Storage/StoredPropertyLists.h"
#include "Support/Fakes.h"
#include "UIKit/UIAlertController.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

/// A folder that is gone when its owner is.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return _path; }

private:
    std::filesystem::path _path;
};

/// What happened on the screen, a line each: "insert 3 SomeRow animated", "remove 3 SomeRow animated", "reload",
/// "reloadSection 2 animation 5", "push TDPage", "pop TDPage", "sheet Title", "error text", "picker", "dismiss".
class ScreenRecorder final : public UIPresentationObserver,
                             public UITableViewObserver,
                             public std::enable_shared_from_this<ScreenRecorder> {
public:
    std::vector<std::string> lines;
    /// As a host with a window: pages are shown when the test says so.
    bool showsLater = false;

    bool showsPagesLater() const override { return showsLater; }
    void willPush(const std::shared_ptr<UIViewController>& page) override;
    void didPush(const std::shared_ptr<UIViewController>& page) override;
    void didPop(const std::shared_ptr<UIViewController>& page) override;
    void didPresent(const std::shared_ptr<UIViewController>& controller) override;
    void didDismiss(const std::shared_ptr<UIViewController>& controller) override;
    void didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override;
    void didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override;
    void didReloadData() override;
    void didReloadSection(std::size_t section, UITableViewRowAnimation animation) override;
};

/// A phone of fakes on a folder of its own, with real property lists, files and images, and an empty bundle to which a
/// test writes the page definitions that it wants.
class TestPhone {
    // First, because the files below it need it from the beginning to the end.
    TemporaryDirectory _root;

public:
    static constexpr const char* settingsPath = "/var/mobile/Library/Preferences/com.vexil.tandem.plist";
    static constexpr const char* bundlePath = "/Library/PreferenceBundles/TandemPreferences.bundle";
    static constexpr const char* mainBundlePath = "/Applications/Preferences.app";

    /// `classOfModule` is any class of the module that the bundle stands for.
    explicit TestPhone(const Class& classOfModule);
    ~TestPhone();

    /// Writes a binary property list.
    void writePropertyList(const std::string& path, const Value& value);
    /// The root of the property list; null when there is none.
    Value readPropertyList(const std::string& path) const;
    std::optional<Bytes> readFile(const std::string& path) const { return files->read(path); }
    void writeFile(const std::string& path, const Bytes& content);
    std::string hostPath(const std::string& path) const { return files->hostPath(path); }

    void storeSettings(const Dictionary& settings);
    Value storedSettings() const { return readPropertyList(settingsPath); }
    /// A page definition of those items.
    void writePage(const std::string& name, const Array& items);
    /// The page definition of the product.
    void copyPage(const std::string& name);
    /// A translation in the application's own bundle.
    void translate(const std::string& language, const Dictionary& texts);

    /// A PNG of one colour.
    Bytes png(int width, int height) const;
    /// The home screen knows the app, with an icon.
    void installApp(const std::string& bundleIdentifier);

    std::shared_ptr<DiskFiles> files;
    std::shared_ptr<RecordedLog> log = std::make_shared<RecordedLog>();
    std::shared_ptr<RecordedNotifications> notifications = std::make_shared<RecordedNotifications>();
    std::shared_ptr<FakePairedDevices> devices = std::make_shared<FakePairedDevices>();
    std::shared_ptr<FakeSubscriptions> subscriptions = std::make_shared<FakeSubscriptions>();
    std::shared_ptr<FakeHomeScreen> homeScreen = std::make_shared<FakeHomeScreen>();
    std::shared_ptr<FakeAppearance> appearance = std::make_shared<FakeAppearance>();
    std::shared_ptr<RecordedMail> mail = std::make_shared<RecordedMail>();
    std::shared_ptr<RecordedLinks> links = std::make_shared<RecordedLinks>();
};

/// An item of a page definition.
Value item(const std::string& cell, const std::string& identifier, Dictionary more = {});
/// Link rows of those identifiers.
Array plainItems(const std::vector<std::string>& identifiers);
/// The identifiers of the rows, "-" for one without.
std::vector<std::string> identifiersOf(const Rows& rows);

using Strings = std::vector<std::string>;
