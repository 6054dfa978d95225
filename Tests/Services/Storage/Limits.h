#pragma once

#include <csignal>
#include <string>

#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

/// While it lives, root acts as a user without rights. Anybody else is that user already.
class Unprivileged {
public:
    Unprivileged()
    {
        constexpr uid_t nobody = 65534;
        if (_user == 0 && seteuid(nobody) != 0)
            _user = nobody;
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    ~Unprivileged()
    {
        if (_user == 0)
            _isRestored = seteuid(0) == 0;
    }

private:
    uid_t _user = geteuid();
    bool _isRestored = false;
};

/// While it lives, no file can grow beyond that many bytes.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &_old);
        const rlimit limit { bytes, _old.rlim_max };
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &_old); }

private:
    rlimit _old {};
};

/// A file system of 64 KiB, where the process may mount one.
class SmallDisk {
public:
    explicit SmallDisk(std::string path)
        : _path(std::move(path))
        , _isMounted(mount("tmpfs", _path.c_str(), "tmpfs", 0, "size=64k") == 0)
    {
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk()
    {
        if (_isMounted)
            umount(_path.c_str());
    }

    bool isMounted() const { return _isMounted; }

private:
    std::string _path;
    bool _isMounted;
};
