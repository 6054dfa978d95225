#include "Driver/Printer.h"

#include "Driver/PlainText.h"
#include "UIKit/UITableViewCell.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::size_t pageWidth = 76;
constexpr std::size_t identifierColumn = 34;
/// The fields of events that may have many lines: what is said to the user, and what is logged.
constexpr std::array<std::string_view, 2> longFields { "message", "text" };

/// Of rows and events, which devices, SIMs and apps may have named.
std::string textOf(const Json& json, LineBreaks lineBreaks = LineBreaks::Written)
{
    return json.is_string() ? plainText(json.get<std::string>(), lineBreaks) : std::string();
}

/// The number of places that a text takes on a terminal, every character counted as one.
std::size_t width(const std::string& text)
{
    std::size_t places = 0;
    for (const char c : text)
        places += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return places;
}

std::string padded(const std::string& text, std::size_t places)
{
    const std::size_t taken = width(text);
    return taken >= places ? text + " " : text + std::string(places - taken, ' ');
}

std::string upperCased(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return text;
}

/// The text broken at spaces, every line indented.
std::string wrapped(const std::string& text, const std::string& indent)
{
    std::string out;
    std::string line;
    std::size_t begin = 0;
    const auto flush = [&] {
        if (!line.empty())
            out += indent + line + "\n";
        line.clear();
    };
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find_first_of(" \n", begin), text.size());
        const std::string word = text.substr(begin, end - begin);
        if (!line.empty() && indent.size() + width(line) + 1 + width(word) > pageWidth)
            flush();
        line += (line.empty() || word.empty() ? "" : " ") + word;
        if (end < text.size() && text[end] == '\n')
            flush();
        begin = end + 1;
    }
    flush();
    return out;
}

std::string numberText(double number)
{
    return number == std::floor(number) && std::abs(number) < 1e15 ? std::to_string(static_cast<long long>(number))
                                                                   : Json(number).dump();
}

bool carriesCheckmark(const Json& cell)
{
    return cell.is_object() && cell["accessory"] == static_cast<int>(UITableViewCellAccessoryType::Checkmark);
}

/// The second line of a cell that has one; empty for others.
std::string secondLine(const Json& cell)
{
    if (!cell.is_object() || cell["style"] != static_cast<int>(UITableViewCellStyle::Subtitle))
        return {};
    return textOf(cell["detailTextLabel"]["text"]);
}

std::string valueText(const Json& row, const Json& cell)
{
    if (carriesCheckmark(cell))
        return "✓";
    const Json& value = row["value"];
    const std::string type = textOf(row["cell"]);
    // A stored text is read as the control reads it.
    const Value read = valueOf(value).value_or(Value());
    if (type == "PSSwitchCell")
        return read.boolValue() ? "[on]" : "[off]";
    if (type == "PSSliderCell")
        return value.is_number() || value.is_string() ? "<" + numberText(read.doubleValue()) + ">" : "<->";
    if (!row["detail"].is_null())
        return ">";
    return textOf(value);
}

std::string printedRow(const Json& row, const Json& cell)
{
    const std::string mark = row["enabled"].get<bool>() ? "  " : "  (";
    const std::string name = row["name"].is_null() ? "-" : textOf(row["name"]);
    std::string line = padded(mark + name + (row["enabled"].get<bool>() ? "" : ")"), identifierColumn);
    line += padded(valueText(row, cell), 8);
    const std::string identifier =
        row["identifier"].is_null() ? std::to_string(row["index"].get<std::size_t>()) : textOf(row["identifier"]);
    return line + identifier + "\n" + wrapped(secondLine(cell), "    ");
}

std::string printedEvent(const Json& event)
{
    std::string line = textOf(event["event"]);
    for (const auto& [key, value] : event.items()) {
        const LineBreaks lineBreaks =
            std::ranges::find(longFields, key) != longFields.end() ? LineBreaks::Kept : LineBreaks::Written;
        if (key != "event")
            line += "  " + plainText(key) + " "
                + (value.is_string() ? textOf(value, lineBreaks) : plainText(lineOf(value)));
    }
    return line + "\n";
}

} // namespace

std::string printedPage(const Json& reply)
{
    const std::string title = textOf(reply["title"]);
    std::string out = title + "\n" + std::string(std::max<std::size_t>(1, width(title)), '=') + "\n";
    std::string footer;
    bool needsGap = true;
    for (std::size_t i = 0; i < reply["rows"].size(); ++i) {
        const Json& row = reply["rows"][i];
        if (textOf(row["cell"]) != "PSGroupCell") {
            out += (needsGap ? "\n" : "") + printedRow(row, reply["cells"][i]);
            needsGap = false;
            continue;
        }
        out += wrapped(footer, "    ");
        footer = textOf(row["footer"], LineBreaks::Kept);
        const std::string name = textOf(row["name"]);
        out += name.empty() ? "" : "\n" + upperCased(name) + "\n";
        needsGap = name.empty();
    }
    return out + (needsGap && !footer.empty() ? "\n" : "") + wrapped(footer, "    ");
}

std::string printedEvents(const Json& events)
{
    std::string out;
    for (const Json& event : events)
        out += printedEvent(event);
    return out.empty() ? "nothing happened\n" : out;
}
