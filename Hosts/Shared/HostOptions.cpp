#include "Shared/HostOptions.h"

#include "libtandem/TDProduct.h"

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr const char* demoPhoneFile = "DemoPhone/demo.json";

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string firstThatExists(std::initializer_list<fs::path> candidates)
{
    for (const fs::path& candidate : candidates) {
        std::error_code ignored;
        if (fs::exists(candidate, ignored))
            return candidate.lexically_normal().string();
    }
    return {};
}

} // namespace

std::string HostOptions::defaultPhone()
{
    std::error_code ignored;
    return fs::exists(fs::path(programDirectory()) / TDProduct::bundleName, ignored) ? demoPhone : linuxPhone;
}

std::string HostOptions::defaultRoot()
{
    const std::string data = environment("XDG_DATA_HOME");
    if (fs::path(data).is_absolute())
        return fs::path(data) / "tandem";
    return fs::path(environment("HOME").empty() ? "/" : environment("HOME")) / ".local/share/tandem";
}

std::string programDirectory()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? std::string(".") : program.parent_path().string();
}

std::string ownBundleDirectory()
{
    const fs::path program = programDirectory();
    return firstThatExists(
        { program / TDProduct::bundleName, program / TANDEM_INSTALLED_LIBRARIES / TDProduct::bundleName });
}

std::string ownDemoPhone()
{
    const fs::path program = programDirectory();
    return firstThatExists({ program / demoPhoneFile, program / TANDEM_INSTALLED_DATA / demoPhoneFile });
}
