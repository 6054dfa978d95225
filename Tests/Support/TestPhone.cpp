#include "Support/TestPhone.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSKeyedArchiver.h"
#include "Foundation/NSString.h"
#include "UIKit/UIImage.h"
#include "UIKit/UIViewAnimation.h"
#include "libtandem/TDSettings.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

std::string nameOf(const std::shared_ptr<NSObject>& object)
{
    const auto row = std::dynamic_pointer_cast<PSSpecifier>(object);
    return row && row->identifier() ? *row->identifier() : "-";
}

std::string change(const char* verb, std::size_t index, const std::shared_ptr<NSObject>& object, bool animated)
{
    return std::string(verb) + " " + std::to_string(index) + " " + nameOf(object) + (animated ? " animated" : "");
}

} // namespace

TemporaryDirectory::TemporaryDirectory()
{
    std::string pattern = (fs::temp_directory_path() / "tandem-test-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary directory");
    _path = pattern;
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    fs::remove_all(_path, ignored);
}

void ScreenRecorder::willPush(const std::shared_ptr<UIViewController>& page)
{
    if (const auto list = std::dynamic_pointer_cast<PSListController>(page))
        list->table().setObserver(weak_from_this());
}

void ScreenRecorder::didPush(const std::shared_ptr<UIViewController>& page)
{
    lines.push_back("push " + page->isa().name());
}

void ScreenRecorder::didPop(const std::shared_ptr<UIViewController>& page)
{
    lines.push_back("pop " + page->isa().name());
}

void ScreenRecorder::didPresent(const std::shared_ptr<UIViewController>& controller)
{
    if (const auto alert = std::dynamic_pointer_cast<UIAlertController>(controller)) {
        const bool isSheet = alert->preferredStyle() == UIAlertControllerStyle::ActionSheet;
        lines.push_back(isSheet ? "sheet " + alert->title() : "error " + alert->message());
    } else if (std::dynamic_pointer_cast<UIImagePickerController>(controller)) {
        lines.emplace_back("picker");
    } else {
        lines.push_back("present " + controller->isa().name());
    }
}

void ScreenRecorder::didDismiss(const std::shared_ptr<UIViewController>& /*controller*/)
{
    lines.emplace_back("dismiss");
}

void ScreenRecorder::didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated)
{
    lines.push_back(change("insert", index, item, animated));
}

void ScreenRecorder::didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated)
{
    lines.push_back(change("remove", index, item, animated));
}

void ScreenRecorder::didReloadData()
{
    lines.emplace_back("reload");
}

void ScreenRecorder::didReloadSection(std::size_t section, UITableViewRowAnimation animation)
{
    lines.push_back(
        "reloadSection " + std::to_string(section) + " animation " + std::to_string(static_cast<int>(animation)));
}

TestPhone::TestPhone(const Class& classOfModule)
    : files(std::make_shared<DiskFiles>(_root.path().string()))
{
    Phone phone;
    phone.propertyLists = std::make_shared<StoredPropertyLists>();
    phone.files = files;
    phone.images = std::make_shared<ModuleImages>();
    phone.systemLog = log;
    phone.darwinNotifications = notifications;
    phone.pairedDevices = devices;
    phone.subscriptions = subscriptions;
    phone.homeScreen = homeScreen;
    phone.appearance = appearance;
    phone.mail = mail;
    phone.links = links;
    phone.mainBundlePath = mainBundlePath;
    Phone::setCurrent(std::move(phone));
    files->createDirectory("/var/mobile/Library/Preferences");
    files->createDirectory(bundlePath);
    NSBundle::registerModuleOfClass(classOfModule, bundlePath);
    storeSettings({});
}

TestPhone::~TestPhone()
{
    UIGraphicsDrainImageContexts();
    UIViewAnimations::shared().setClock(nullptr);
    UIViewAnimations::shared().setObserver(nullptr);
    Phone::setCurrent({});
}

void TestPhone::writePropertyList(const std::string& path, const Value& value)
{
    std::string error;
    const auto bytes = StoredPropertyLists().writeBinary(value, error);
    ASSERT_TRUE(bytes) << error;
    writeFile(path, *bytes);
}

Value TestPhone::readPropertyList(const std::string& path) const
{
    const auto bytes = files->read(path);
    return bytes ? StoredPropertyLists().read(*bytes).value_or(Value()) : Value();
}

void TestPhone::writeFile(const std::string& path, const Bytes& content)
{
    // Renamed into place, as a program would do it, but without a wait for the disk: tests write many files.
    const fs::path file = hostPath(path);
    const fs::path written = file.string() + ".written";
    fs::create_directories(file.parent_path());
    std::ofstream(written, std::ios::binary).write(reinterpret_cast<const char*>(content.data()), std::ssize(content));
    fs::rename(written, file);
}

void TestPhone::storeSettings(const Dictionary& settings)
{
    writePropertyList(settingsPath, settings);
    TDSettings::sharedSettings()->reloadSettings();
}

void TestPhone::writePage(const std::string& name, const Array& items)
{
    writePropertyList(stringByAppendingPathComponent(bundlePath, name + ".plist"),
        Dictionary { { "title", name }, { "items", items } });
}

void TestPhone::copyPage(const std::string& name)
{
    std::ifstream stream(fs::path(TANDEM_BUNDLE) / (name + ".plist"), std::ios::binary);
    ASSERT_TRUE(stream) << name;
    writeFile(
        stringByAppendingPathComponent(bundlePath, name + ".plist"), Bytes(std::istreambuf_iterator<char>(stream), {}));
}

void TestPhone::translate(const std::string& language, const Dictionary& texts)
{
    const std::string folder = stringByAppendingPathComponent(mainBundlePath, language + ".lproj");
    writePropertyList(stringByAppendingPathComponent(folder, "Localizable.strings"), texts);
    Phone::current().languages.push_back(language);
}

Bytes TestPhone::png(int width, int height) const
{
    Bitmap bitmap { width, height, Bytes(static_cast<std::size_t>(width) * height * 4, 0xFF) };
    return ModuleImages().encodePng(bitmap).value_or(Bytes());
}

void TestPhone::installApp(const std::string& bundleIdentifier)
{
    const auto icon = UIImage::imageWithData(png(60, 60), 2);
    homeScreen->addReply(bundleIdentifier,
        Dictionary { { "TDServiceMessageData", *NSKeyedArchiver::archivedDataWithRootObject(icon) } });
}

Value item(const std::string& cell, const std::string& identifier, Dictionary more)
{
    more.emplace("cell", cell);
    more.emplace("id", identifier);
    more.emplace("label", "Label of " + identifier);
    return more;
}

Array plainItems(const std::vector<std::string>& identifiers)
{
    Array items;
    for (const std::string& identifier : identifiers)
        items.push_back(item("PSLinkCell", identifier));
    return items;
}

std::vector<std::string> identifiersOf(const Rows& rows)
{
    std::vector<std::string> identifiers;
    for (const Row& row : rows)
        identifiers.push_back(row->identifier().value_or("-"));
    return identifiers;
}
