#include "Demo/DemoDescription.h"

#include "Demo/DemoFile.h"

#include <algorithm>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

namespace {

using Json = nlohmann::json;

constexpr std::size_t largestFile = 1U << 20U;
constexpr std::size_t longestMessage = 240;
constexpr double smallestScale = 1;
constexpr double largestScale = 8;
constexpr double smallestTextScale = 0.5;
constexpr double largestTextScale = 3;
constexpr const char* lightAppearance = "light";
constexpr const char* darkAppearance = "dark";
const Json absentValue;

/// What is wrong with the file, and where. It does not leave this source file.
struct Fault {
    std::string place;
    std::string problem;
};

/// A value of the file and the place where it stands, as a JSON pointer. Lives no longer than the parsed file.
class Node {
public:
    Node(const Json& json, std::string place)
        : _json(&json)
        , _place(std::move(place))
    {
    }

    /// Null, or not there at all.
    bool isAbsent() const { return _json->is_null(); }

    std::string text() const
    {
        require(_json->is_string(), "a string");
        return _json->get_ref<const std::string&>();
    }

    bool flag() const
    {
        require(_json->is_boolean(), "true or false");
        return _json->get<bool>();
    }

    double number() const
    {
        require(_json->is_number(), "a number");
        return _json->get<double>();
    }

    std::vector<Node> elements() const
    {
        require(_json->is_array(), "a list");
        std::vector<Node> nodes;
        for (const Json& element : *_json)
            nodes.emplace_back(element, _place + "/" + std::to_string(nodes.size()));
        return nodes;
    }

    std::vector<std::pair<std::string, Node>> members() const
    {
        require(_json->is_object(), "an object");
        std::vector<std::pair<std::string, Node>> nodes;
        for (const auto& member : _json->items())
            nodes.emplace_back(member.key(), Node(member.value(), _place + "/" + member.key()));
        return nodes;
    }

    Node member(const char* key) const
    {
        require(_json->is_object(), "an object");
        const auto found = _json->find(key);
        return { found == _json->end() ? absentValue : *found, _place + "/" + key };
    }

    void allowOnly(std::initializer_list<std::string_view> keys) const
    {
        for (const auto& [key, node] : members()) {
            if (std::find(keys.begin(), keys.end(), key) == keys.end())
                node.fail("unknown key");
        }
    }

    [[noreturn]] void fail(const std::string& problem) const { throw Fault { _place, problem }; }

private:
    void require(bool isExpected, const char* expected) const
    {
        if (!isExpected)
            fail(std::string("expected ") + expected + ", found " + found());
    }

    const char* found() const
    {
        switch (_json->type()) {
        case Json::value_t::null:
            return "nothing";
        case Json::value_t::boolean:
            return "true or false";
        case Json::value_t::string:
            return "a string";
        case Json::value_t::array:
            return "a list";
        case Json::value_t::object:
            return "an object";
        default:
            return "a number";
        }
    }

    const Json* _json;
    std::string _place;
};

template <class Read>
auto ifPresent(const Node& node, Read read)
{
    return node.isAbsent() ? std::nullopt : std::optional(read(node));
}

template <class Element>
std::vector<Element> listOf(const Node& list, Element (*read)(const Node&))
{
    std::vector<Element> all;
    for (const Node& element : list.elements())
        all.push_back(read(element));
    return all;
}

std::string readText(const Node& node)
{
    return node.text();
}

bool readFlag(const Node& node)
{
    return node.flag();
}

bool readDark(const Node& node)
{
    const std::string text = node.text();
    if (text != lightAppearance && text != darkAppearance)
        node.fail(R"(expected "light" or "dark")");
    return text == darkAppearance;
}

double readScale(const Node& node)
{
    const double scale = node.number();
    if (!(scale >= smallestScale && scale <= largestScale))
        node.fail("expected a number from 1 to 8");
    return scale;
}

double readTextScale(const Node& node)
{
    const double scale = node.number();
    if (!(scale >= smallestTextScale && scale <= largestTextScale))
        node.fail("expected a number from 0.5 to 3");
    return scale;
}

Subscription readSubscription(const Node& node)
{
    node.allowOnly({ "uuid", "label", "phoneNumber", "carrier", "userDefaultVoice" });
    Subscription subscription;
    subscription.uuid = node.member("uuid").text();
    subscription.label = ifPresent(node.member("label"), readText);
    subscription.phoneNumber = ifPresent(node.member("phoneNumber"), readText);
    subscription.carrier = ifPresent(node.member("carrier"), readText);
    subscription.userDefaultVoice = ifPresent(node.member("userDefaultVoice"), readFlag).value_or(false);
    return subscription;
}

PairedDevice readPairedDevice(const Node& node)
{
    node.allowOnly({ "name", "address" });
    return { node.member("name").text(), node.member("address").text() };
}

std::vector<Subscription> readSubscriptions(const Node& node)
{
    return listOf(node, readSubscription);
}

std::vector<PairedDevice> readPairedDevices(const Node& node)
{
    return listOf(node, readPairedDevice);
}

std::vector<std::string> readPhotos(const Node& node)
{
    return listOf(node, readText);
}

std::map<std::string, std::string> readHomeScreen(const Node& node)
{
    std::map<std::string, std::string> pictures;
    for (const auto& [app, picture] : node.members()) {
        if (!picture.isAbsent())
            pictures.emplace(app, picture.text());
    }
    return pictures;
}

DemoDescription readPhone(const Node& node)
{
    node.allowOnly({ "appearance", "textScale", "reducedMotion", "scale", "subscriptions", "pairedDevices",
        "homeScreen", "photos" });
    DemoDescription phone;
    phone.dark = ifPresent(node.member("appearance"), readDark);
    phone.textScale = ifPresent(node.member("textScale"), readTextScale);
    phone.reducedMotion = ifPresent(node.member("reducedMotion"), readFlag);
    phone.scale = ifPresent(node.member("scale"), readScale).value_or(phone.scale);
    phone.subscriptions = ifPresent(node.member("subscriptions"), readSubscriptions);
    phone.pairedDevices = ifPresent(node.member("pairedDevices"), readPairedDevices);
    phone.homeScreen = ifPresent(node.member("homeScreen"), readHomeScreen);
    phone.photos = ifPresent(node.member("photos"), readPhotos).value_or(phone.photos);
    return phone;
}

std::string lineAndColumn(const Bytes& text, std::size_t position)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
    const auto line = std::count(text.begin(), end, '\n') + 1;
    const auto lineStart = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
    return "line " + std::to_string(line) + ", column " + std::to_string(end - lineStart + 1);
}

Fault notJsonAt(const Bytes& text, std::size_t position)
{
    return { lineAndColumn(text, position), "not valid JSON" };
}

Json parse(const Bytes& text)
{
    // The parser takes a zero byte for the end of the text.
    const auto zero = std::find(text.begin(), text.end(), 0);
    if (zero != text.end())
        throw notJsonAt(text, static_cast<std::size_t>(zero - text.begin()));
    try {
        return Json::parse(text.begin(), text.end());
    } catch (const Json::parse_error& failure) {
        throw notJsonAt(text, failure.byte > 0 ? failure.byte - 1 : 0);
    } catch (const Json::exception&) {
        throw Fault { "", "not valid JSON: a number is out of range" };
    }
}

/// Keys and file names are the file's own and may hold anything, line ends included.
std::string asOneLine(std::string message)
{
    std::replace_if(
        message.begin(), message.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
    if (message.size() <= longestMessage)
        return message;
    const auto isInsideCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    std::size_t end = longestMessage;
    while (end > 0 && isInsideCharacter(message[end]))
        --end;
    return message.substr(0, end) + "...";
}

std::string describe(const std::string& file, const Fault& fault)
{
    return asOneLine(file + ": " + fault.place + (fault.place.empty() ? "" : ": ") + fault.problem);
}

Bytes contentOf(const std::string& file)
{
    auto text = contentOfFile(file, largestFile);
    if (!text)
        throw Fault { "", text.failure().text };
    return std::move(*text);
}

} // namespace

Result<DemoDescription> readDemoDescription(const std::string& file)
{
    try {
        return readPhone(Node(parse(contentOf(file)), ""));
    } catch (const Fault& fault) {
        return Failure { describe(file, fault) };
    }
}
