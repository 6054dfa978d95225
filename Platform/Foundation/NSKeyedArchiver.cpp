#include "Foundation/NSKeyedArchiver.h"

#include "Foundation/NSFileManager.h"

#include <unordered_map>

namespace {

constexpr const char* archiverName = "NSKeyedArchiver";
constexpr long archiveVersion = 100000;
constexpr const char* nullMarker = "$null";
constexpr const char* classKey = "$class";
constexpr const char* classNameKey = "$classname";
constexpr const char* classesKey = "$classes";
constexpr const char* objectsKey = "$objects";
constexpr const char* topKey = "$top";
constexpr const char* rootKey = "root";
constexpr const char* arrayClassName = "NSArray";
constexpr const char* dictionaryClassName = "NSDictionary";
constexpr const char* keysField = "NS.keys";
constexpr const char* valuesField = "NS.objects";
/// Deeper than any archive that a phone makes.
constexpr std::size_t greatestDepth = 64;
/// References may be shared, so a small archive could unfold to values, texts and data without end.
constexpr std::size_t mostValues = 100'000;
constexpr std::size_t mostBytes = std::size_t { 64 } << 20;

std::unordered_map<std::string_view, KeyedCoding>& codings()
{
    static std::unordered_map<std::string_view, KeyedCoding> byClassName;
    return byClassName;
}

class Encoder {
public:
    Encoder() { _objects.emplace_back(nullMarker); }

    /// The reference of the value in the table. What cannot be kept, or is too deep to be read again, leaves the
    /// archive incomplete.
    Uid add(const Value& value)
    {
        if (value.isNull())
            return Uid { 0 };
        const bool isContainer = value.array() || value.dictionary() || value.object();
        if (!isContainer)
            return append(value);
        if (_depth >= greatestDepth)
            return fail();
        ++_depth;
        const Uid added = addContents(value);
        --_depth;
        return added;
    }

    bool complete() const { return _complete; }
    Array takeObjects() { return std::move(_objects); }

private:
    Uid fail()
    {
        _complete = false;
        return Uid { 0 };
    }

    Uid addContents(const Value& value)
    {
        if (const auto* elements = value.array())
            return addContainer(arrayClassName, { { valuesField, references(*elements) } });
        if (const auto* entries = value.dictionary()) {
            Array keys;
            Array values;
            for (const auto& [key, entry] : *entries) {
                keys.emplace_back(key);
                values.push_back(entry);
            }
            return addContainer(
                dictionaryClassName, { { keysField, references(keys) }, { valuesField, references(values) } });
        }
        return addObject(*value.object());
    }

    Uid append(const Value& value)
    {
        _objects.push_back(value);
        return Uid { _objects.size() - 1 };
    }

    Value references(const Array& values)
    {
        Array uids;
        for (const Value& value : values)
            uids.emplace_back(add(value));
        return uids;
    }

    Uid addClass(const std::string& name)
    {
        return append(Dictionary { { classNameKey, name }, { classesKey, Array { name, "NSObject" } } });
    }

    Uid addContainer(const std::string& className, Dictionary fields)
    {
        fields.emplace(classKey, addClass(className));
        return append(std::move(fields));
    }

    Uid addObject(NSObject& object)
    {
        const std::string& name = object.isa().name();
        const auto coding = codings().find(name);
        const Value fields = coding == codings().end() ? Value() : coding->second.encode(object);
        if (!fields.dictionary())
            return fail();
        Dictionary encoded;
        for (const auto& [key, field] : *fields.dictionary())
            encoded.emplace(key, add(field));
        return addContainer(name, std::move(encoded));
    }

    Array _objects;
    std::size_t _depth = 0;
    bool _complete = true;
};

class Decoder {
public:
    explicit Decoder(const Array& objects)
        : _objects(objects)
    {
    }

    /// What the reference stands for; null when it, or something it needs, stands for nothing.
    Value decodeRoot(const Value& reference)
    {
        Value root = resolve(reference);
        return _failed ? Value() : root;
    }

private:
    Value fail()
    {
        _failed = true;
        return {};
    }

    /// Null for the null reference, and when the decoder fails.
    Value resolve(const Value& reference)
    {
        if (reference.kind() != Value::Kind::Uid)
            return reference;
        const std::uint64_t index = reference.uid().index;
        if (index == 0 || _failed)
            return {};
        if (index >= _objects.size() || !isWithinLimits(_objects[index]))
            return fail();
        const Value& entry = _objects[index];
        if (!entry.dictionary())
            return entry;
        if (_depth >= greatestDepth)
            return fail();
        ++_depth;
        Value object = decode(*entry.dictionary());
        --_depth;
        return object.isNull() ? fail() : object;
    }

    /// Counts the entry among what the archive unfolds to.
    bool isWithinLimits(const Value& entry)
    {
        ++_values;
        if (entry.string())
            _bytes += entry.string()->size();
        if (entry.data())
            _bytes += entry.data()->size();
        return _values <= mostValues && _bytes <= mostBytes;
    }

    Value decode(const Dictionary& encoded)
    {
        const std::string className = classNameOf(valueForKey(encoded, classKey)).value_or(std::string());
        if (className == arrayClassName || className == "NSMutableArray")
            return resolveAll(valueForKey(encoded, valuesField));
        if (className == dictionaryClassName || className == "NSMutableDictionary")
            return decodeDictionary(encoded);
        const auto coding = codings().find(className);
        if (coding == codings().end())
            return {};
        Dictionary fields;
        for (const auto& [key, field] : encoded) {
            if (key != classKey)
                fields.emplace(key, resolve(field));
        }
        return _failed ? nullptr : coding->second.decode(fields);
    }

    std::optional<std::string> classNameOf(const Value& reference) const
    {
        if (reference.kind() != Value::Kind::Uid || reference.uid().index >= _objects.size())
            return std::nullopt;
        return _objects[reference.uid().index][classNameKey].optionalString();
    }

    Value resolveAll(const Value& references)
    {
        if (!references.array())
            return {};
        Array values;
        for (const Value& reference : *references.array()) {
            values.push_back(resolve(reference));
            if (_failed)
                return {};
        }
        return values;
    }

    Value decodeDictionary(const Dictionary& encoded)
    {
        const Value keys = resolveAll(valueForKey(encoded, keysField));
        const Value values = resolveAll(valueForKey(encoded, valuesField));
        if (!keys.array() || !values.array() || keys.array()->size() != values.array()->size())
            return {};
        Dictionary entries;
        for (std::size_t i = 0; i < keys.array()->size(); ++i) {
            const auto* key = (*keys.array())[i].string();
            if (!key)
                return {};
            entries.emplace(*key, (*values.array())[i]);
        }
        return entries;
    }

    const Array& _objects;
    std::size_t _depth = 0;
    std::size_t _values = 0;
    std::size_t _bytes = 0;
    bool _failed = false;
};

} // namespace

bool registerKeyedCoding(const Class& cls, KeyedCoding coding)
{
    return codings().emplace(cls.name(), coding).second;
}

std::optional<Bytes> NSKeyedArchiver::archivedDataWithRootObject(const Value& root)
{
    Encoder encoder;
    const Uid top = encoder.add(root);
    if (!encoder.complete())
        return std::nullopt;
    return dataWithPropertyList(Dictionary {
                                    { "$version", archiveVersion },
                                    { "$archiver", archiverName },
                                    { topKey, Dictionary { { rootKey, top } } },
                                    { objectsKey, encoder.takeObjects() },
                                })
        .data;
}

Value NSKeyedUnarchiver::unarchiveObjectWithData(const Bytes& data)
{
    const Value archive = propertyListWithData(data);
    const auto* archiver = archive["$archiver"].string();
    const auto* objects = archive[objectsKey].array();
    if (!archiver || *archiver != archiverName || !objects)
        return {};
    return Decoder(*objects).decodeRoot(archive[topKey][rootKey]);
}
