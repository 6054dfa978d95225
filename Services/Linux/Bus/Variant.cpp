#include "Linux/Bus/Variant.h"

#include <algorithm>
#include <gio/gio.h>
#include <limits>

namespace {

constexpr const char* propertiesType = "a{sv}";
constexpr const char* interfacesType = "a{sa{sv}}";
constexpr const char* objectsType = "a{oa{sa{sv}}}";
constexpr const char* textsType = "as";
constexpr const char* pathsType = "ao";
constexpr const char* filesType = "ah";

std::string stringIn(const Variant& value)
{
    gsize length = 0;
    const char* text = g_variant_get_string(value.get(), &length);
    return { text, length };
}

std::vector<std::string> stringsIn(const Variant& value, const char* type)
{
    std::vector<std::string> strings;
    for (std::size_t i = 0; value.is(type) && i < value.size(); ++i)
        strings.push_back(stringIn(value[i]));
    return strings;
}

/// The entries of a dictionary by their keys, which are strings, with values as the function reads them.
template <typename Entries, typename Read>
std::optional<Entries> entriesIn(const Variant& value, const char* type, Read read)
{
    if (!value.is(type))
        return std::nullopt;
    Entries entries;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const Variant entry = value[i];
        entries.insert_or_assign(stringIn(entry[0]), read(entry[1]));
    }
    return entries;
}

class ArrayBuilder {
public:
    explicit ArrayBuilder(const char* type) { g_variant_builder_init(&_builder, G_VARIANT_TYPE(type)); }
    ArrayBuilder(const ArrayBuilder&) = delete;
    ArrayBuilder& operator=(const ArrayBuilder&) = delete;
    ~ArrayBuilder() { g_variant_builder_clear(&_builder); }

    void add(GVariant* value) { g_variant_builder_add_value(&_builder, value); }
    Variant end() { return Variant(g_variant_builder_end(&_builder)); }

private:
    GVariantBuilder _builder;
};

Variant property(const BusProperties& properties, std::string_view name)
{
    const auto found = properties.find(name);
    return found == properties.end() ? Variant() : found->second.unwrapped();
}

} // namespace

Variant::Variant(GVariant* value)
{
    if (value)
        _value.reset(g_variant_take_ref(value), g_variant_unref);
}

Variant Variant::ofText(const std::string& text)
{
    return Variant(g_variant_new_take_string(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()))));
}

Variant Variant::ofTexts(const std::vector<std::string>& texts)
{
    ArrayBuilder builder(textsType);
    for (const std::string& text : texts)
        builder.add(ofText(text).get());
    return builder.end();
}

Variant Variant::ofBoolean(bool value)
{
    return Variant(g_variant_new_boolean(value));
}

Variant Variant::ofUnsigned(std::uint32_t value)
{
    return Variant(g_variant_new_uint32(value));
}

Variant Variant::ofFiles(const std::vector<std::int32_t>& places)
{
    ArrayBuilder builder(filesType);
    for (const std::int32_t place : places)
        builder.add(g_variant_new_handle(place));
    return builder.end();
}

Variant Variant::ofProperties(const BusProperties& properties)
{
    ArrayBuilder builder(propertiesType);
    for (const auto& [name, value] : properties)
        builder.add(g_variant_new_dict_entry(ofText(name).get(), g_variant_new_variant(value.get())));
    return builder.end();
}

Variant Variant::ofTuple(std::initializer_list<Variant> values)
{
    std::vector<GVariant*> children;
    std::ranges::transform(values, std::back_inserter(children), &Variant::get);
    return Variant(g_variant_new_tuple(children.data(), children.size()));
}

bool Variant::is(const char* type) const
{
    return _value && g_variant_is_of_type(get(), G_VARIANT_TYPE(type));
}

std::size_t Variant::size() const
{
    return _value && g_variant_is_container(get()) ? g_variant_n_children(get()) : 0;
}

Variant Variant::operator[](std::size_t place) const
{
    return place < size() ? Variant(g_variant_get_child_value(get(), place)) : Variant();
}

Variant Variant::unwrapped() const
{
    Variant value = *this;
    while (value.is("v"))
        value = value[0];
    return value;
}

std::optional<std::string> Variant::text() const
{
    return is("s") ? std::optional(stringIn(*this)) : std::nullopt;
}

std::optional<std::string> Variant::path() const
{
    return is("o") ? std::optional(stringIn(*this)) : std::nullopt;
}

std::optional<bool> Variant::boolean() const
{
    return is("b") ? std::optional(g_variant_get_boolean(get()) != 0) : std::nullopt;
}

std::optional<std::int64_t> Variant::number() const
{
    switch (_value ? g_variant_classify(get()) : G_VARIANT_CLASS_TUPLE) {
    case G_VARIANT_CLASS_BYTE:
        return g_variant_get_byte(get());
    case G_VARIANT_CLASS_INT16:
        return g_variant_get_int16(get());
    case G_VARIANT_CLASS_UINT16:
        return g_variant_get_uint16(get());
    case G_VARIANT_CLASS_INT32:
        return g_variant_get_int32(get());
    case G_VARIANT_CLASS_UINT32:
        return g_variant_get_uint32(get());
    case G_VARIANT_CLASS_INT64:
        return g_variant_get_int64(get());
    case G_VARIANT_CLASS_UINT64:
        return static_cast<std::int64_t>(
            std::min<guint64>(g_variant_get_uint64(get()), std::numeric_limits<std::int64_t>::max()));
    default:
        return std::nullopt;
    }
}

std::optional<double> Variant::real() const
{
    return is("d") ? std::optional(g_variant_get_double(get())) : std::nullopt;
}

std::optional<BusProperties> propertiesIn(const Variant& value)
{
    return entriesIn<BusProperties>(value, propertiesType, [](const Variant& entry) { return entry[0]; });
}

std::optional<BusInterfaces> interfacesIn(const Variant& value)
{
    return entriesIn<BusInterfaces>(
        value, interfacesType, [](const Variant& entry) { return propertiesIn(entry).value(); });
}

std::optional<BusObjects> objectsIn(const Variant& value)
{
    return entriesIn<BusObjects>(value, objectsType, [](const Variant& entry) { return interfacesIn(entry).value(); });
}

std::vector<std::string> textsIn(const Variant& value)
{
    return stringsIn(value, textsType);
}

std::vector<std::string> pathsIn(const Variant& value)
{
    return stringsIn(value, pathsType);
}

std::string textOf(const BusProperties& properties, std::string_view name)
{
    return property(properties, name).text().value_or(std::string());
}

std::vector<std::string> textsOf(const BusProperties& properties, std::string_view name)
{
    return textsIn(property(properties, name));
}

std::string pathOf(const BusProperties& properties, std::string_view name)
{
    return property(properties, name).path().value_or(std::string());
}

std::vector<std::string> pathsOf(const BusProperties& properties, std::string_view name)
{
    return pathsIn(property(properties, name));
}

bool isTrue(const BusProperties& properties, std::string_view name)
{
    return property(properties, name).boolean() == true;
}

bool isFalse(const BusProperties& properties, std::string_view name)
{
    return property(properties, name).boolean() == false;
}

std::optional<std::int64_t> numberOf(const BusProperties& properties, std::string_view name)
{
    return property(properties, name).number();
}

std::optional<double> realOf(const BusProperties& properties, std::string_view name)
{
    return property(properties, name).real();
}
