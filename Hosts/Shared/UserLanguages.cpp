#include "Shared/UserLanguages.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

constexpr const char* languageList = "LANGUAGE";
constexpr char listSeparator = ':';
constexpr std::string_view sourceLanguage = "en";

std::string_view environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// "de_DE" of "de_DE.UTF-8" and of "de_DE@euro".
std::string_view languageOf(std::string_view locale)
{
    return locale.substr(0, locale.find_first_of(".@"));
}

bool isUntranslated(std::string_view language)
{
    return language.empty() || language == "C" || language == "POSIX";
}

std::string_view localeOfMessages()
{
    for (const char* name : { "LC_ALL", "LC_MESSAGES", "LANG" }) {
        if (const auto locale = environment(name); !locale.empty())
            return locale;
    }
    return {};
}

void add(std::string language, std::vector<std::string>& languages)
{
    if (std::ranges::find(languages, language) == languages.end())
        languages.push_back(std::move(language));
}

/// The language of a country before the language, which is the result.
std::string_view addWithCountry(std::string_view language, std::vector<std::string>& languages)
{
    const std::string_view bare = language.substr(0, language.find('_'));
    std::string full(language);
    std::ranges::replace(full, '_', '-');
    add(std::move(full), languages);
    add(std::string(bare), languages);
    return bare;
}

} // namespace

std::vector<std::string> userLanguages()
{
    const std::string_view locale = localeOfMessages();
    if (isUntranslated(languageOf(locale)))
        return {};
    std::string_view list = environment(languageList);
    if (list.empty())
        list = locale;
    std::vector<std::string> languages;
    while (!list.empty()) {
        const std::string_view language = languageOf(list.substr(0, list.find(listSeparator)));
        list.remove_prefix(std::min(list.size(), list.find(listSeparator)));
        list.remove_prefix(list.empty() ? 0 : 1);
        if (language.empty())
            continue;
        // What follows is never needed: texts without a translation are English.
        if (isUntranslated(language) || addWithCountry(language, languages) == sourceLanguage)
            break;
    }
    return languages;
}
