#include "Shared/BundleLoader.h"

#include "Foundation/NSBundle.h"
#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "Storage/DiskFiles.h"

#include <dlfcn.h>

namespace {

constexpr const char* infoFile = "Info.plist";
constexpr const char* executableKey = "CFBundleExecutable";
constexpr const char* principalClassKey = "NSPrincipalClass";
constexpr const char* moduleSuffix = ".so";

} // namespace

Result<const Class*> loadPrincipalClass(const DiskFiles& files, const std::string& bundlePath)
{
    const std::string infoPath = stringByAppendingPathComponent(bundlePath, infoFile);
    const auto info = dictionaryWithContentsOfFile(infoPath);
    const auto* executable = info ? valueForKey(*info, executableKey).string() : nullptr;
    const auto* className = info ? valueForKey(*info, principalClassKey).string() : nullptr;
    if (!executable || !className)
        return Failure { files.hostPath(infoPath) + " is missing, or names no module and principal class" };
    const std::string name = executable->ends_with(moduleSuffix) ? *executable : *executable + moduleSuffix;
    const std::string module = files.hostPath(stringByAppendingPathComponent(bundlePath, name));
    if (!dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL))
        return Failure { dlerror() };
    const Class* principal = NSClassFromString(*className);
    if (!principal)
        return Failure { module + " has no class " + *className };
    NSBundle::registerModuleOfClass(*principal, bundlePath);
    return principal;
}
