#include "Linux/Telephony/MobileProviders.h"

#include "Linux/Telephony/Texts.h"

#include <algorithm>
#include <cstring>
#include <glib.h>
#include <map>
#include <memory>
#include <string_view>

namespace {

constexpr std::size_t countryCodeLength = 3;

using Strings = std::unordered_map<std::string, std::string>;

std::string attribute(const gchar** names, const gchar** values, std::string_view wanted)
{
    for (; *names; ++names, ++values) {
        if (*names == wanted)
            return *values;
    }
    return {};
}

std::string upperCase(const std::string& text)
{
    const std::unique_ptr<char, decltype(&g_free)> upper(g_ascii_strup(text.c_str(), -1), g_free);
    return upper.get();
}

/// Whether the elements that are open end with these: the innermost first.
bool isWithin(GMarkupParseContext* context, std::initializer_list<std::string_view> names)
{
    const GSList* element = g_markup_parse_context_get_element_stack(context);
    for (const std::string_view name : names) {
        if (!element || static_cast<const char*>(element->data) != name)
            return false;
        element = element->next;
    }
    return true;
}

/// Goes through the list once, from country to provider to network.
class Reader {
public:
    Strings names;
    /// How many networks of a country code a region has. Some codes are shared with small territories.
    std::map<std::string, std::map<std::string, int>> networks;

    void read(std::string_view text)
    {
        const GMarkupParser parser { start, nullptr, addText, nullptr, nullptr };
        const std::unique_ptr<GMarkupParseContext, decltype(&g_markup_parse_context_unref)> context(
            g_markup_parse_context_new(&parser, G_MARKUP_DEFAULT_FLAGS, this, nullptr), g_markup_parse_context_unref);
        g_markup_parse_context_parse(context.get(), text.data(), static_cast<gssize>(text.size()), nullptr);
    }

private:
    static void start(GMarkupParseContext* context, const gchar* /*element*/, const gchar** attributes,
        const gchar** values, gpointer self, GError** /*error*/) noexcept
    {
        auto& reader = *static_cast<Reader*>(self);
        if (isWithin(context, { "country" }))
            reader._region = upperCase(attribute(attributes, values, "code"));
        else if (isWithin(context, { "provider" }))
            reader._name.clear();
        else if (isWithin(context, { "network-id", "gsm", "provider" }))
            reader.addNetwork(attribute(attributes, values, "mcc"), attribute(attributes, values, "mnc"));
    }

    static void addText(
        GMarkupParseContext* context, const gchar* text, gsize length, gpointer self, GError** /*error*/) noexcept
    {
        auto& reader = *static_cast<Reader*>(self);
        if (reader._name.empty() && isWithin(context, { "name", "provider" }))
            reader._name = trimmed({ text, length });
    }

    void addNetwork(const std::string& country, const std::string& network)
    {
        // A network that several carriers use is listed first with the one that owns it.
        names.try_emplace(country + network, _name);
        ++networks[country][_region];
    }

    std::string _region;
    std::string _name;
};

std::string largest(const std::map<std::string, int>& counts)
{
    return std::ranges::max_element(counts, {}, &std::pair<const std::string, int>::second)->first;
}

std::string valueOr(const Strings& strings, const std::string& key)
{
    const auto found = strings.find(key);
    return found == strings.end() ? std::string() : found->second;
}

} // namespace

MobileProviders::MobileProviders(const std::string& file)
{
    char* content = nullptr;
    gsize length = 0;
    g_file_get_contents(file.c_str(), &content, &length, nullptr);
    const std::unique_ptr<char, decltype(&g_free)> owner(content, g_free);
    Reader reader;
    if (content)
        reader.read({ content, length });
    _names = std::move(reader.names);
    for (const auto& [country, regions] : reader.networks)
        _regions.insert_or_assign(country, largest(regions));
}

std::string MobileProviders::nameOf(const std::string& network) const
{
    return valueOr(_names, network);
}

std::string MobileProviders::regionOf(const std::string& network) const
{
    return valueOr(_regions, network.substr(0, countryCodeLength));
}
