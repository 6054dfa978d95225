#include "Linux/Desktop/Browser.h"

#include <algorithm>
#include <gio/gdesktopappinfo.h>
#include <memory>
#include <string_view>

namespace {

constexpr const char* terminalKey = "Terminal";
constexpr char codeSign = '%';
/// The codes of a desktop entry's command that stand for what is to be opened.
constexpr std::string_view linkCodes = "uUfF";

using AppInfo = std::unique_ptr<GAppInfo, void (*)(gpointer)>;

bool needsTerminal(GAppInfo* app)
{
    return G_IS_DESKTOP_APP_INFO(app) && g_desktop_app_info_get_boolean(G_DESKTOP_APP_INFO(app), terminalKey);
}

/// The words of a desktop entry's command; none when it is not well formed.
ProgramCommand wordsOf(const char* command)
{
    char** words = nullptr;
    if (!command || !g_shell_parse_argv(command, nullptr, &words, nullptr))
        return {};
    const std::unique_ptr<char*, void (*)(char**)> owner(words, g_strfreev);
    return { words, words + g_strv_length(words) };
}

/// What a code, with its sign, stands for. Those of icons and names stand for nothing here.
std::string meaningOf(std::string_view code, const std::string& url)
{
    if (code.size() == 2 && linkCodes.find(code[1]) != std::string_view::npos)
        return url;
    return code.ends_with(codeSign) ? std::string(1, codeSign) : std::string();
}

/// The word with what its codes stand for.
std::string expanded(std::string_view word, const std::string& url)
{
    std::string text;
    while (!word.empty()) {
        const std::size_t plain = std::min(word.find(codeSign), word.size());
        text += word.substr(0, plain);
        text += meaningOf(word.substr(plain, 2), url);
        word.remove_prefix(std::min(plain + 2, word.size()));
    }
    return text;
}

/// The command as it is run; none when it is not well formed, or its program is not there.
ProgramCommand commandFor(const std::string& url, const char* entry)
{
    ProgramCommand command;
    for (const std::string& word : wordsOf(entry)) {
        if (std::string text = expanded(word, url); !text.empty())
            command.push_back(std::move(text));
    }
    const std::string program = command.empty() ? std::string() : pathOfProgram(command.front());
    if (program.empty())
        return {};
    command.front() = program;
    if (std::ranges::none_of(command, [&url](const std::string& word) { return word.find(url) != std::string::npos; }))
        command.push_back(url);
    return command;
}

} // namespace

// GIO would also run the command. But before that it waits for the user's bus, without a bound, and on a connection
// that ends this process when it goes away.
ProgramCommand browserCommand(const std::string& url)
{
    const std::string scheme = url.substr(0, url.find(':'));
    const AppInfo browser(g_app_info_get_default_for_uri_scheme(scheme.c_str()), g_object_unref);
    if (!browser || needsTerminal(browser.get()))
        return {};
    return commandFor(url, g_app_info_get_commandline(browser.get()));
}
