#include "Shared/BundleLoader.h"

#include "Storage/DiskFiles.h"
#include "Foundation/NSBundle.h"
#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"

#include <dlfcn.h>

namespace {

constexpr const char* infoFile = "Info.plist";
constexpr const char* executableKey = "CFBundleExecutable";
constexpr const char* principalClassKey = "NSPrincipalClass";
constexpr const char* moduleSuffix = ".so";

} // namespace

const Class* loadPrincipalClass(const DiskFiles& files, const std::string& bundlePath, std::string& error)
{
    const std::string infoPath = stringByAppendingPathComponent(bundlePath, infoFile);
    const auto info = dictionaryWithContentsOfFile(infoPath);
    const auto* executable = info ? valueForKey(*info, executableKey).string() : nullptr;
    const auto* className = info ? valueForKey(*info, principalClassKey).string() : nullptr;
    if (!executable || !className) {
        error = files.hostPath(infoPath) + " is missing, or names no module and principal class";
        return nullptr;
    }
    const std::string name = executable->ends_with(moduleSuffix) ? *executable : *executable + moduleSuffix;
    const std::string module = files.hostPath(stringByAppendingPathComponent(bundlePath, name));
    if (!dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        error = dlerror();
        return nullptr;
    }
    const Class* principal = NSClassFromString(*className);
    if (!principal) {
        error = module + " has no class " + *className;
        return nullptr;
    }
    NSBundle::registerModuleOfClass(*principal, bundlePath);
    return principal;
}
