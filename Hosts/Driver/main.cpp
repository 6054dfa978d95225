#include "Driver/CommandLine.h"
#include "Driver/DriverSession.h"
#include "Driver/InputLines.h"
#include "Driver/LayoutCheck.h"
#include "Driver/Printer.h"
#include "Driver/Watch.h"
#include "Shared/LeakCheck.h"
#include "libtandem/TDProduct.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <unistd.h>

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr const char* rootPageName = "root";

/// One line, whatever words of the command line stand in it.
int fail(std::string message, int code)
{
    std::replace_if(
        message.begin(), message.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
    std::cerr << "tandem: " << message << "\n";
    return code;
}

/// What the user is to be told once, when there is something.
void tell(const HostSession& host)
{
    if (const auto& notice = host.notice())
        std::cerr << *notice << "\n";
}

/// An identifier of the page or, where it has none of that name, an index.
Json rowWord(const std::string& word, DriverSession& session)
{
    if (session.hasRow(word))
        return word;
    long index = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), index);
    return error == std::errc() && end == word.data() + word.size() ? Json(index) : Json(word);
}

Json valueWord(const std::string& word)
{
    if (word == "on" || word == "true" || word == "yes")
        return true;
    if (word == "off" || word == "false" || word == "no")
        return false;
    const Json number = Json::parse(word, nullptr, false);
    return number.is_number() ? number : Json(word);
}

/// The reply; null for an error, which is printed.
Json checked(Json reply)
{
    if (reply["ok"].get<bool>())
        return reply;
    fail(reply["error"].get<std::string>(), exitFailure);
    return nullptr;
}

std::string pageOf(const CommandLine& line)
{
    return line.arguments.empty() ? rootPageName : line.arguments.front();
}

int show(DriverSession& session, const CommandLine& line)
{
    const Json reply = checked(line.json ? session.handle({ { "do", "rows" } }) : session.rowsWithCells());
    if (reply.is_null())
        return exitFailure;
    std::cout << (line.json ? lineOf(reply) + "\n" : printedPage(reply));
    return 0;
}

int work(DriverSession& session, const CommandLine& line, Json request)
{
    request["row"] = rowWord(line.arguments[1], session);
    const Json reply = checked(session.handle(request));
    if (reply.is_null())
        return exitFailure;
    std::cout << printedEvents(reply["events"]);
    return 0;
}

/// Needs the plug-in's classes but no page, so that it works where pages do not.
int check(const CommandLine& line)
{
    const auto host = HostSession::open(line.host, nullptr);
    if (!host)
        return fail(host.failure().text, exitFailure);
    tell(**host);
    const auto faults = layoutFaults(TDProduct::bundlePath());
    for (const std::string& fault : faults)
        std::cout << fault << "\n";
    return faults.empty() ? 0 : exitFailure;
}

int drive(DriverSession& session)
{
    InputLines lines(STDIN_FILENO, [&session] { session.host().waitUntilReadable(STDIN_FILENO); });
    while (const auto line = lines.next())
        std::cout << lineOf(session.handleLine(*line)) << std::endl;
    return 0;
}

int run(const CommandLine& line)
{
    if (line.command == CommandLine::Command::Help) {
        std::cout << CommandLine::usage();
        return 0;
    }
    if (line.command == CommandLine::Command::Version) {
        std::cout << "tandem " TANDEM_VERSION "\n";
        return 0;
    }
    if (line.command == CommandLine::Command::Check)
        return check(line);
    if (line.command == CommandLine::Command::Watch)
        return watchNotifications(line.arguments) ? 0 : fail("there is no session bus, or it went away", exitFailure);
    const auto opened = DriverSession::open(line.host);
    if (!opened)
        return fail(opened.failure().text, exitFailure);
    const auto& session = *opened;
    if (line.command == CommandLine::Command::Drive)
        return drive(*session);
    tell(session->host());
    if (checked(session->handle({ { "do", "open" }, { "page", pageOf(line) } })).is_null())
        return exitFailure;
    if (line.command == CommandLine::Command::Show)
        return show(*session, line);
    if (line.command == CommandLine::Command::Tap)
        return work(*session, line, { { "do", "tap" } });
    return work(*session, line, { { "do", "set" }, { "value", valueWord(line.arguments[2]) } });
}

int run(const std::vector<std::string>& words)
{
    const auto line = CommandLine::parse(words);
    return line ? run(*line) : fail(line.failure().text + " (tandem help tells more)", exitUsage);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const int code = run({ arguments + 1, arguments + argumentCount });
    lookForLeaks();
    return std::cout.flush() ? code : fail("the standard output cannot be written to", exitFailure);
}
