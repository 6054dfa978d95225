#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _GVariant;

/// A value in a message on a bus, or nothing. Daemons may send anything: each way to read it gives nothing when the
/// value has another type. Values are never changed.
class Variant {
public:
    /// Nothing.
    Variant() = default;
    /// Takes a reference over, or the value's floating one; null makes nothing.
    explicit Variant(_GVariant* value);

    static Variant ofText(const std::string& text);
    static Variant ofTexts(const std::vector<std::string>& texts);
    static Variant ofBoolean(bool value);
    static Variant ofUnsigned(std::uint32_t value);
    /// Places in the list of a request's files: "ah".
    static Variant ofFiles(const std::vector<std::int32_t>& places);
    /// "a{sv}".
    static Variant ofProperties(const std::map<std::string, Variant, std::less<>>& properties);
    static Variant ofTuple(std::initializer_list<Variant> values);

    explicit operator bool() const { return _value != nullptr; }
    /// For GIO; null for nothing.
    _GVariant* get() const { return _value.get(); }
    /// Whether the value is of the type with that signature, as "a{sv}".
    bool is(const char* type) const;

    /// How many values an array, a dictionary or a tuple has; zero for what is none of these.
    std::size_t size() const;
    /// The value at the place; nothing when there is none.
    Variant operator[](std::size_t place) const;
    /// What variants within variants hold; the value itself when it is none.
    Variant unwrapped() const;

    // The value itself, not that of a variant.
    std::optional<std::string> text() const;
    std::optional<std::string> path() const;
    std::optional<bool> boolean() const;
    /// Of any type of whole numbers; those above the range are cut off.
    std::optional<std::int64_t> number() const;
    std::optional<double> real() const;

private:
    std::shared_ptr<_GVariant> _value;
};

/// The properties of an interface: "a{sv}".
using BusProperties = std::map<std::string, Variant, std::less<>>;
/// Properties by interface, or by group: "a{sa{sv}}".
using BusInterfaces = std::map<std::string, BusProperties, std::less<>>;
/// Interfaces by path: "a{oa{sa{sv}}}".
using BusObjects = std::map<std::string, BusInterfaces, std::less<>>;

// Nothing when the value is of another type.
std::optional<BusProperties> propertiesIn(const Variant& value);
std::optional<BusInterfaces> interfacesIn(const Variant& value);
std::optional<BusObjects> objectsIn(const Variant& value);
/// Of "as" and "ao" respectively; empty when the value is of another type.
std::vector<std::string> textsIn(const Variant& value);
std::vector<std::string> pathsIn(const Variant& value);

// A property; empty, false or nothing when it is missing or of another type.
std::string textOf(const BusProperties& properties, std::string_view name);
std::vector<std::string> textsOf(const BusProperties& properties, std::string_view name);
std::string pathOf(const BusProperties& properties, std::string_view name);
std::vector<std::string> pathsOf(const BusProperties& properties, std::string_view name);
bool isTrue(const BusProperties& properties, std::string_view name);
bool isFalse(const BusProperties& properties, std::string_view name);
std::optional<std::int64_t> numberOf(const BusProperties& properties, std::string_view name);
std::optional<double> realOf(const BusProperties& properties, std::string_view name);
