#pragma once

#include "Foundation/NSError.h"
#include "Phone/Files.h"

#include <optional>
#include <string>

/// The files of the phone. Without a file service nothing exists and nothing can be made or removed.
class NSFileManager final : public NSObject {
    NS_CLASS(NSFileManager, NSObject)
public:
    static NSFileManager& defaultManager();

    /// Something stands at the path: a file or a directory alike.
    bool fileExistsAtPath(const std::string& path) const;
    /// Null on success, and also when the directory is there already.
    std::shared_ptr<NSError> createDirectoryAtPath(const std::string& path);
    /// Null on success.
    std::shared_ptr<NSError> removeItemAtPath(const std::string& path);
};

/// The content of the file, or nothing when it cannot be read.
std::optional<Bytes> dataWithContentsOfFile(const std::string& path);

/// The state of the file, or nothing when it is missing.
std::optional<FileStamp> stampOfFile(const std::string& path);

enum class Atomically { No, Yes };

/// True when the whole content stands in the file. Atomically goes by way of a temporary file; otherwise the file is
/// overwritten in place.
bool writeToFile(const Bytes& data, const std::string& path, Atomically atomically);

/// The dictionary at the root of the property list in that file; nothing when the file is missing, unreadable, no
/// property list or one whose root is no dictionary.
std::optional<Dictionary> dictionaryWithContentsOfFile(const std::string& path);

/// The root of the property list in that file, of any type; null when there is none. Parsed once for each state of the
/// file, so it suits files that are asked for often and change seldom.
Value cachedPropertyListInFile(const std::string& path);

/// A property list serialised, or the reason why it could not be.
struct SerializedPropertyList {
    std::optional<Bytes> data;
    std::shared_ptr<NSError> error;
};

/// The value as a binary property list, version 1.0. Null has no such form.
SerializedPropertyList dataWithPropertyList(const Value& value);

/// The root of a property list of any encoding, null when the bytes are none.
Value propertyListWithData(const Bytes& data);
