// Writes a property list in its binary form, which is read faster than the XML that people write: compile-list SOURCE
// TARGET, both absolute paths. The build runs it for the property lists of the bundle.

#include "Storage/DiskFiles.h"
#include "Storage/StoredPropertyLists.h"

#include <cstdio>

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

Result<void> compile(const std::string& source, const std::string& target)
{
    const StoredPropertyLists lists;
    DiskFiles files("/");
    const auto content = files.read(source);
    const auto list = content ? lists.read(*content) : std::nullopt;
    if (!list)
        return Failure { source + (content ? " is no property list" : " cannot be read") };
    std::string reason;
    const auto compiled = lists.writeBinary(*list, reason);
    if (!compiled)
        return Failure { source + ": " + reason };
    if (const auto written = files.replace(target, *compiled); !written)
        return Failure { target + ": " + written.failure().text };
    return {};
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::fputs("usage: compile-list SOURCE TARGET\n", stderr);
        return exitUsage;
    }
    const auto compiled = compile(arguments[1], arguments[2]);
    if (compiled)
        return 0;
    std::fprintf(stderr, "compile-list: %s\n", compiled.failure().text.c_str());
    return exitFailure;
}
