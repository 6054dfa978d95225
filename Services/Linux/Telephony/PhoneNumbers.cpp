#include "Linux/Telephony/PhoneNumbers.h"

#include "Linux/Telephony/PhoneNumberModule.h"
#include "Phone/Phone.h"

#include <dlfcn.h>
#include <filesystem>

namespace {

using Formatter = decltype(&tandemFormatPhoneNumber);

constexpr const char* moduleName = "libtandem-phonenumbers.so";
constexpr const char* formatterName = "tandemFormatPhoneNumber";

/// The module lies beside the platform's library, built or installed. Null where it is missing.
Formatter loadedFormatter()
{
    Dl_info platform {};
    if (!dladdr(reinterpret_cast<const void*>(&Phone::current), &platform) || !platform.dli_fname)
        return nullptr;
    const auto file = std::filesystem::path(platform.dli_fname).replace_filename(moduleName);
    void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    return module ? reinterpret_cast<Formatter>(dlsym(module, formatterName)) : nullptr;
}

} // namespace

std::string formattedPhoneNumber(const std::string& number, const std::string& region)
{
    static const Formatter format = loadedFormatter();
    std::string formatted = number;
    if (format)
        format(number, region, formatted);
    return formatted;
}
