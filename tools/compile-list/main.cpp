// Writes a property list in its binary form, which is read faster than the XML that people write: compile-list SOURCE
// TARGET, both absolute paths. The build runs it for the property lists of the bundle.

#include "Storage/DiskFiles.h"
#include "Storage/LibplistPropertyLists.h"

#include <cstdio>
#include <stdexcept>

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

void compile(const std::string& source, const std::string& target)
{
    const LibplistPropertyLists lists;
    DiskFiles files("/");
    const auto content = files.read(source);
    const auto list = content ? lists.read(*content) : std::nullopt;
    if (!list)
        throw std::runtime_error(source + (content ? " is no property list" : " cannot be read"));
    std::string reason;
    const auto compiled = lists.writeBinary(*list, reason);
    if (!compiled)
        throw std::runtime_error(source + ": " + reason);
    if (const auto written = files.replace(target, *compiled); !written)
        throw std::runtime_error(target + ": " + written.failure().text);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::fputs("usage: compile-list SOURCE TARGET\n", stderr);
        return exitUsage;
    }
    try {
        compile(arguments[1], arguments[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "compile-list: %s\n", error.what());
        return exitFailure;
    }
    return 0;
}
