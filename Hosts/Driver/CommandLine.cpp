#include "Driver/CommandLine.h"

#include "Driver/PageNames.h"

#include <array>

namespace {

/// A command, what follows it, and how many words that may be.
struct CommandShape {
    const char* name;
    CommandLine::Command command;
    const char* arguments;
    std::size_t fewest;
    std::size_t most;
    bool startsWithPage;
};

using Command = CommandLine::Command;

constexpr std::size_t mostNames = 1000;

constexpr std::array<CommandShape, 8> shapes { {
    { "show", Command::Show, "[PAGE] [--json]", 0, 1, true },
    { "set", Command::Set, "PAGE ROW VALUE", 3, 3, true },
    { "tap", Command::Tap, "PAGE ROW", 2, 2, true },
    { "check", Command::Check, "", 0, 0, false },
    { "watch", Command::Watch, "[NAME...]", 0, mostNames, false },
    { "drive", Command::Drive, "", 0, 0, false },
    { "help", Command::Help, "", 0, 0, false },
    { "version", Command::Version, "", 0, 0, false },
} };

const CommandShape* shapeNamed(const std::string& name)
{
    for (const CommandShape& shape : shapes) {
        if (name == shape.name)
            return &shape;
    }
    return nullptr;
}

/// Goes through the words once, from the first to the last.
class Parser {
public:
    explicit Parser(const std::vector<std::string>& words)
        : _words(words)
    {
    }

    Result<CommandLine> parse()
    {
        for (_next = 0; _next < _words.size() && _error.empty();)
            takeWord(_words[_next++]);
        if (_error.empty())
            finish();
        if (!_error.empty())
            return Failure { _error };
        return _line;
    }

private:
    void takeWord(const std::string& word)
    {
        if (_onlyArguments || !word.starts_with("--")) {
            takePlainWord(word);
        } else if (word == "--") {
            _onlyArguments = true;
        } else if (word == "--help") {
            _shape = shapeNamed("help");
        } else if (word == "--json") {
            _line.json = true;
        } else if (word == "--no-provision") {
            _line.host.provision = false;
        } else if (word == "--phone" || word.starts_with("--phone=")) {
            takeOptionValue(word, "--phone", "demo, linux or the file of a phone", _line.host.phone);
        } else if (word == "--root" || word.starts_with("--root=")) {
            takeOptionValue(word, "--root", "a directory", _line.host.root);
        } else {
            _error = "unknown option " + word + "; the options are --phone, --root, --no-provision and --json";
        }
    }

    void takeOptionValue(
        const std::string& word, const std::string& name, const std::string& meaning, std::string& value)
    {
        if (word != name)
            value = word.substr(name.size() + 1);
        else
            value = _next < _words.size() ? _words[_next++] : std::string();
        if (value.empty())
            _error = name + " must be followed by " + meaning;
    }

    void takePlainWord(const std::string& word)
    {
        if (_shape) {
            _line.arguments.push_back(word);
            return;
        }
        _shape = shapeNamed(word);
        if (!_shape)
            _error =
                "unknown command " + word + "; the commands are show, set, tap, check, watch, drive, help and version";
    }

    void finish()
    {
        if (!_shape) {
            _error = "a command is missing: show, set, tap, check, watch, drive, help or version";
            return;
        }
        _line.command = _shape->command;
        const std::size_t count = _line.arguments.size();
        const std::string right =
            std::string("tandem ") + _shape->name + (*_shape->arguments ? " " : "") + _shape->arguments;
        if (count < _shape->fewest || count > _shape->most)
            _error = std::string(count < _shape->fewest ? "too few" : "too many") + " words after " + _shape->name
                + "; right is: " + right;
        else if (_line.json && _line.command != Command::Show)
            _error = "--json goes with show alone";
        else if (_shape->startsWithPage && count > 0 && !pageNamed(_line.arguments.front()))
            _error = "no page is named " + _line.arguments.front()
                + "; the pages are root, calls, messages, bluetooth, sims and misc";
    }

    const std::vector<std::string>& _words;
    std::size_t _next = 0;
    bool _onlyArguments = false;
    const CommandShape* _shape = nullptr;
    CommandLine _line;
    std::string _error;
};

} // namespace

Result<CommandLine> CommandLine::parse(const std::vector<std::string>& words)
{
    return Parser(words).parse();
}

std::string CommandLine::usage()
{
    return "usage: tandem [--phone demo|linux|FILE] [--root DIR] [--no-provision] COMMAND\n"
           "\n"
           "  show [PAGE] [--json]   the page as it stands: its rows, their values, the footers\n"
           "  set PAGE ROW VALUE     as if the control of the row was moved; prints what happened\n"
           "  tap PAGE ROW           as if the row was tapped; prints what happened\n"
           "  check                  the page definitions held against the layout rules; exit 1 if a rule is broken\n"
           "  watch [NAME...]        the notifications of those names, or all, as they arrive on this machine\n"
           "  drive                  one JSON request a line on standard input, one JSON reply a line on standard "
           "output\n"
           "  version                the version of this program\n"
           "\n"
           "PAGE is root, calls, messages, bluetooth, sims or misc. ROW is an identifier or an index. VALUE is on or "
           "off for a\n"
           "switch, a number for a slider. The switch of a Bluetooth device changes over, whichever of the two VALUE "
           "is: setting\n"
           "it to on twice binds the device and unbinds it again. The phone's files lie below DIR, by default a folder "
           "of your\n"
           "own; with --no-provision nothing is made there that is missing.\n";
}
