#include "TDProductVersion.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "libtandem/TDProduct.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr const char* infoFile = "Root.plist";
constexpr const char* versionKey = "Version";
constexpr const char* queryTool = "/usr/bin/dpkg-query";
constexpr std::size_t readSize = 1024;

/// A quote inside the argument stays as it is: escaping it has no effect here, and the one identifier asked for holds
/// none.
std::string quoted(const std::string& argument)
{
    return stringWithFormat("'%@'", { argument });
}

/// Keeps the complaints of a process that is started meanwhile off the terminal: that the package is not installed is
/// no error here.
class SilencedErrors {
public:
    SilencedErrors()
        : _kept(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
    {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (_kept >= 0 && nowhere >= 0)
            dup2(nowhere, STDERR_FILENO);
        if (nowhere >= 0)
            close(nowhere);
    }
    ~SilencedErrors()
    {
        if (_kept < 0)
            return;
        dup2(_kept, STDERR_FILENO);
        close(_kept);
    }
    SilencedErrors(const SilencedErrors&) = delete;
    SilencedErrors& operator=(const SilencedErrors&) = delete;

private:
    int _kept;
};

std::FILE* startedSilently(const std::string& command)
{
    const SilencedErrors silenced;
    return popen(command.c_str(), "r");
}

std::string readAll(std::FILE* stream)
{
    std::string text;
    std::array<char, readSize> piece;
    while (std::fgets(piece.data(), static_cast<int>(piece.size()), stream))
        text += piece.data();
    return stringFromUtf8(text);
}

} // namespace

std::optional<std::string> getProductVersion()
{
    if (auto version = packageVersion(TDProduct::identifier))
        return version;
    const Dictionary* info = getProductInfoDict();
    const Value version = info ? valueForKey(*info, versionKey) : Value();
    return version.isNull() ? std::nullopt : std::optional(descriptionOf(version));
}

std::optional<std::string> packageVersion(const std::string& packageIdentifier)
{
    std::string command;
    for (const std::string& argument :
        { std::string(queryTool), std::string("-Wf"), stringWithFormat("${%@}", { versionKey }), packageIdentifier })
        command += (command.empty() ? "" : " ") + quoted(argument);
    std::FILE* output = startedSilently(command);
    if (!output)
        return std::nullopt;
    std::string text = readAll(output);
    return pclose(output) == 0 ? std::optional(std::move(text)) : std::nullopt;
}

const Dictionary* getProductInfoDict()
{
    static std::optional<Dictionary> productInfoDict;
    if (!productInfoDict)
        productInfoDict =
            dictionaryWithContentsOfFile(stringByAppendingPathComponent(TDProduct::bundlePath(), infoFile));
    return productInfoDict ? &*productInfoDict : nullptr;
}
