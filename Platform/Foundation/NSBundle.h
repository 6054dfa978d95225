#pragma once

#include "Runtime/NSObject.h"

#include <optional>
#include <string>

/// A folder of resources: property lists, images and string tables. A string table is read again only when it has
/// changed.
class NSBundle final : public NSObject {
    NS_CLASS(NSBundle, NSObject)
public:
    NSBundle() = default;
    explicit NSBundle(std::string path)
        : _path(std::move(path))
    {
    }

    /// The bundle of the running application, where texts are translated.
    static std::shared_ptr<NSBundle> mainBundle();
    /// The bundle that the class was loaded from; the main bundle for a class that came from none.
    static std::shared_ptr<NSBundle> bundleForClass(const Class& cls);
    static std::shared_ptr<NSBundle> bundleWithPath(const std::string& path);
    /// Told by a host that has loaded a module: the classes of the module that holds this one belong to the bundle at
    /// that path on the phone.
    static void registerModuleOfClass(const Class& cls, const std::string& bundlePath);

    const std::string& bundlePath() const { return _path; }
    /// The path of a file of the bundle; nothing when it is not there. A type of "" stands for none.
    std::optional<std::string> pathForResource_ofType(const std::string& name, const std::string& type) const;

    /// The text of the user's best language that has the key, from "<language>.lproj/<table>.strings"; where there is
    /// none, the fallback value, or the key when that is empty. An empty table name stands for "Localizable".
    std::string localizedStringForKey_value_table(
        const std::string& key, const std::string& value, const std::string& table) const;

private:
    std::string _path;
};
