#include "Foundation/NSBundle.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "Phone/Phone.h"

#include <dlfcn.h>
#include <unordered_map>

NS_IMPLEMENTATION(NSBundle)

namespace {

constexpr const char* defaultTable = "Localizable";

std::unordered_map<const void*, std::string>& bundlePathsByModule()
{
    static std::unordered_map<const void*, std::string> paths;
    return paths;
}

/// Where the module that holds the class was loaded; null when the loader does not know.
const void* moduleOfClass(const Class& cls)
{
    Dl_info info {};
    return dladdr(&cls, &info) != 0 ? info.dli_fbase : nullptr;
}

} // namespace

std::shared_ptr<NSBundle> NSBundle::mainBundle()
{
    return bundleWithPath(Phone::current().mainBundlePath);
}

std::shared_ptr<NSBundle> NSBundle::bundleForClass(const Class& cls)
{
    const auto& paths = bundlePathsByModule();
    const auto found = paths.find(moduleOfClass(cls));
    return found == paths.end() ? mainBundle() : bundleWithPath(found->second);
}

std::shared_ptr<NSBundle> NSBundle::bundleWithPath(const std::string& path)
{
    return std::make_shared<NSBundle>(path);
}

void NSBundle::registerModuleOfClass(const Class& cls, const std::string& bundlePath)
{
    bundlePathsByModule()[moduleOfClass(cls)] = bundlePath;
}

std::optional<std::string> NSBundle::pathForResource_ofType(const std::string& name, const std::string& type) const
{
    std::string path = stringByAppendingPathComponent(_path, type.empty() ? name : name + "." + type);
    if (!NSFileManager::defaultManager().fileExistsAtPath(path))
        return std::nullopt;
    return path;
}

std::string NSBundle::localizedStringForKey_value_table(
    const std::string& key, const std::string& value, const std::string& table) const
{
    const std::string file = (table.empty() ? std::string(defaultTable) : table) + ".strings";
    for (const std::string& language : Phone::current().languages) {
        const std::string folder = stringByAppendingPathComponent(_path, language + ".lproj");
        const Value strings = cachedPropertyListInFile(stringByAppendingPathComponent(folder, file));
        if (const auto* text = strings[key].string())
            return *text;
    }
    return value.empty() ? key : value;
}
