#pragma once

#include "Foundation/NSString.h"
#include "Foundation/UserDirectories.h"
#include "Shared/TurnFiles.h"
#include "libtandem/TDProduct.h"

#include <optional>
#include <string>

/// What a host does around the settings file that the plug-in does not: it makes an empty one, keeps the last good
/// copy, puts it in the place of a torn one, sees changes by other processes, and keeps our own processes from writing
/// at the same time.
class SettingsFile {
public:
    static inline const std::string folder = preferencesDirectory();
    static inline const std::string path = TDProduct::settingsPath();
    static inline const std::string goodCopyPath =
        stringByAppendingPathComponent(folder, std::string(".") + TDProduct::settingsFileName + ".good");

    explicit SettingsFile(std::shared_ptr<TurnFiles> files)
        : _files(std::move(files))
    {
    }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    ~SettingsFile();

    /// Makes the folders, and an empty settings file where there is nothing.
    Result<void> provision();
    /// Moves a torn file aside and puts the last good copy, or an empty dictionary, in its place. What the user is told
    /// then; nothing when the file is whole, missing, or cannot be read for another reason.
    std::optional<std::string> repair();

    /// Waits, two seconds at the most, until no other process of ours is in a turn. False when one still is, or the
    /// folder is not there; the turn goes on without the lock then.
    bool lock();
    void unlock();

    /// True when the file holds something else than when noteContent was last called. It is read only where its stamp
    /// leaves that open.
    bool hasChanged() const;
    void noteContent();
    /// Keeps a copy of the content that was noted last, if it is whole and not the one that was copied last.
    void keepGoodCopy();

private:
    /// Of the content; zero when there is none.
    std::size_t digest() const;

    std::shared_ptr<TurnFiles> _files;
    std::optional<FileStamp> _noted;
    /// The content cannot have changed since without another stamp.
    bool _notedIsSettled = true;
    std::size_t _notedDigest = 0;
    std::size_t _copiedDigest = 0;
    int _lock = -1;
};
