#include "Storage/DiskFiles.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t longestComponent = 255;
constexpr std::size_t largestFile = std::size_t { 1 } << 30;
constexpr mode_t fileMode = 0644;
constexpr mode_t directoryMode = 0755;
constexpr mode_t permissions = 07777;
/// Short, because the file that is replaced may have the longest name there can be.
constexpr const char* temporaryPrefix = ".tandem-";

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

std::int64_t nanoseconds(const timespec& time)
{
    return time.tv_sec * nanosecondsPerSecond + time.tv_nsec;
}

/// A pipe or a device at the path must neither hang the open nor become our terminal.
constexpr int openFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

Failure failureOf(int code)
{
    return { std::generic_category().message(code), code };
}

/// A file descriptor that is closed at the end of the scope.
class Descriptor {
public:
    explicit Descriptor(int number)
        : _number(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : _number(std::exchange(other._number, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(_number, other._number);
        return *this;
    }
    ~Descriptor() { close(); }

    bool isOpen() const { return _number >= 0; }
    int number() const { return _number; }
    /// 0, or the error number: some file systems tell of a full disk only now.
    int close()
    {
        const int number = std::exchange(_number, -1);
        return number >= 0 && ::close(number) != 0 && errno != EINTR ? errno : 0;
    }

private:
    int _number;
};

/// Calls until the call was not interrupted.
template <class Call>
auto uninterrupted(Call call)
{
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR)
            return result;
    }
}

Descriptor openFile(const std::string& path, int flags)
{
    return Descriptor(uninterrupted([&] { return ::open(path.c_str(), flags | openFlags, fileMode); }));
}

/// The length of an open file, or -1 and the error in errno when it is no regular one.
off_t regularFileLength(const Descriptor& file)
{
    struct stat status { };
    if (fstat(file.number(), &status) != 0)
        return -1;
    if (S_ISREG(status.st_mode))
        return status.st_size;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return -1;
}

/// Writes the bytes from `begin` to `end` to their own place in the file, moved on by `offset`; 0 or the error number.
int writeRange(const Descriptor& file, const Bytes& bytes, std::size_t begin, std::size_t end, std::size_t offset = 0)
{
    while (begin < end) {
        const ssize_t written = uninterrupted([&] {
            return pwrite(file.number(), bytes.data() + begin, end - begin, static_cast<off_t>(offset + begin));
        });
        if (written <= 0)
            return written < 0 ? errno : EIO;
        begin += static_cast<std::size_t>(written);
    }
    return 0;
}

/// 0 or the error number.
int cut(const Descriptor& file, std::size_t length)
{
    return uninterrupted([&] { return ftruncate(file.number(), static_cast<off_t>(length)); }) == 0 ? 0 : errno;
}

/// Brings the new bytes into the file, whose old ones are given; 0 or the error number, and then the old ones are back.
int rewrite(const Descriptor& file, const Bytes& bytes, std::size_t oldLength, const std::optional<Bytes>& oldBytes)
{
    const std::size_t common = std::min(bytes.size(), oldLength);
    // What the file grows by goes first: a full disk refuses that, while the old content is untouched.
    int error = writeRange(file, bytes, common, bytes.size());
    if (error == 0) {
        error = writeRange(file, bytes, 0, common);
        if (error == 0 && bytes.size() < oldLength)
            error = cut(file, bytes.size());
        if (error != 0 && oldBytes)
            writeRange(file, *oldBytes, 0, std::min(common, oldBytes->size()));
    }
    if (error != 0)
        cut(file, oldLength);
    return error;
}

/// Appends what is left of the file to `bytes`; whether all of it could be read and held.
bool readRest(const Descriptor& file, Bytes& bytes)
{
    constexpr std::size_t leastRoom = 4096;
    std::size_t length = bytes.size();
    for (;;) {
        if (length == bytes.size())
            bytes.resize(std::max(2 * length, leastRoom));
        const ssize_t got =
            uninterrupted([&] { return ::read(file.number(), bytes.data() + length, bytes.size() - length); });
        if (got < 0)
            return false;
        if (got == 0)
            break;
        length += static_cast<std::size_t>(got);
        if (length > largestFile)
            return false;
    }
    bytes.resize(length);
    return true;
}

std::optional<Bytes> readFile(const std::string& path)
{
    const Descriptor file = openFile(path, O_RDONLY);
    if (!file.isOpen())
        return std::nullopt;
    const off_t length = regularFileLength(file);
    if (length < 0 || static_cast<std::size_t>(length) > largestFile)
        return std::nullopt;
    Bytes bytes;
    if (!readRest(file, bytes))
        return std::nullopt;
    return bytes;
}

/// A new file in the directory, and its path. Not open, and errno tells why, when none could be made.
Descriptor makeTemporary(const std::string& directory, std::string& path)
{
    static std::atomic<unsigned> made = 0;
    for (;;) {
        path = directory + "/" + temporaryPrefix + std::to_string(getpid()) + "-" + std::to_string(made++);
        Descriptor file = openFile(path, O_WRONLY | O_CREAT | O_EXCL);
        if (file.isOpen() || errno != EEXIST)
            return file;
    }
}

/// 0 or the error number.
int fillTemporary(Descriptor& file, const Bytes& bytes, std::optional<mode_t> mode)
{
    if (mode && fchmod(file.number(), *mode & permissions) != 0)
        return errno;
    if (const int error = writeRange(file, bytes, 0, bytes.size()))
        return error;
    if (uninterrupted([&] { return fsync(file.number()); }) != 0)
        return errno;
    return file.close();
}

template <class Visit>
void forEachComponent(std::string_view path, Visit visit)
{
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find('/'));
        if (!component.empty())
            visit(component);
        path.remove_prefix(std::min(component.size() + 1, path.size()));
    }
}

/// A path in which nothing has to be resolved, as nearly all are.
bool isPlain(std::string_view path)
{
    return path.starts_with('/') && !path.ends_with('/') && path.find("//") == std::string_view::npos
        && path.find("/.") == std::string_view::npos;
}

/// 0, or the error number for a path that is refused.
int checkPath(const std::string& path)
{
    if (path.find('\0') != std::string::npos)
        return EINVAL;
    int error = path.empty() ? ENOENT : 0;
    forEachComponent(path, [&](std::string_view component) {
        if (component.size() > longestComponent)
            error = ENAMETOOLONG;
    });
    return error;
}

/// The path may be a link to where the new file was made.
void removeNewFile(const std::string& path)
{
    std::error_code ignored;
    std::filesystem::remove(std::filesystem::canonical(path, ignored), ignored);
}

bool isDirectory(const std::string& path)
{
    struct stat status { };
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

DiskFiles::DiskFiles(std::string root)
    : _root(std::move(root))
{
    while (_root.ends_with('/'))
        _root.pop_back();
    // A limit on the size of files is then an error of the write that meets it (EFBIG), and not the end of the process.
    std::signal(SIGXFSZ, SIG_IGN);
}

std::string DiskFiles::hostPath(const std::string& phonePath) const
{
    if (isPlain(phonePath))
        return _root + phonePath;
    std::vector<std::string_view> components;
    forEachComponent(phonePath, [&](std::string_view component) {
        if (component == ".." && !components.empty())
            components.pop_back();
        else if (component != "." && component != "..")
            components.push_back(component);
    });
    std::string path = _root;
    for (const std::string_view component : components)
        path.append("/").append(component);
    return path.empty() ? "/" : path;
}

std::optional<Bytes> DiskFiles::read(const std::string& path) const
{
    if (checkPath(path) != 0)
        return std::nullopt;
    return readFile(hostPath(path));
}

std::optional<FileStamp> DiskFiles::stamp(const std::string& path) const
{
    struct stat status { };
    if (checkPath(path) != 0 || stat(hostPath(path).c_str(), &status) != 0)
        return std::nullopt;
    return FileStamp { status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
        nanoseconds(status.st_ctim) };
}

Result<void> DiskFiles::overwrite(const std::string& path, const Bytes& bytes)
{
    return overwrite(path, bytes, read(path));
}

Result<void> DiskFiles::overwrite(const std::string& path, const Bytes& bytes, const std::optional<Bytes>& oldBytes)
{
    if (const int error = checkPath(path))
        return failureOf(error);
    const std::string target = hostPath(path);
    Descriptor file = openFile(target, O_WRONLY);
    const bool isNew = !file.isOpen() && errno == ENOENT;
    if (isNew)
        file = openFile(target, O_WRONLY | O_CREAT);
    if (!file.isOpen())
        return failureOf(errno);
    const off_t oldLength = regularFileLength(file);
    if (oldLength < 0)
        return failureOf(errno);
    int error = rewrite(file, bytes, static_cast<std::size_t>(oldLength), oldBytes);
    if (const int closeError = file.close(); error == 0)
        error = closeError;
    if (error == 0)
        return {};
    if (isNew && oldLength == 0)
        removeNewFile(target);
    return failureOf(error);
}

Result<void> DiskFiles::replace(const std::string& path, const Bytes& bytes)
{
    if (const int error = checkPath(path))
        return failureOf(error);
    const std::string target = hostPath(path);
    struct stat old { };
    const bool isThere = stat(target.c_str(), &old) == 0;
    if (isThere && S_ISDIR(old.st_mode))
        return failureOf(EISDIR);
    std::string temporary;
    Descriptor file = makeTemporary(target.substr(0, target.rfind('/')), temporary);
    if (!file.isOpen())
        return failureOf(errno);
    int error = fillTemporary(file, bytes, isThere ? std::optional(old.st_mode) : std::nullopt);
    if (error == 0 && std::rename(temporary.c_str(), target.c_str()) != 0)
        error = errno;
    if (error == 0)
        return {};
    unlink(temporary.c_str());
    return failureOf(error);
}

Result<std::size_t> DiskFiles::append(const std::string& path, const Bytes& bytes)
{
    if (const int error = checkPath(path))
        return failureOf(error);
    Descriptor file = openFile(hostPath(path), O_WRONLY | O_CREAT);
    const off_t oldLength = file.isOpen() ? regularFileLength(file) : -1;
    if (oldLength < 0)
        return failureOf(errno);
    const auto length = static_cast<std::size_t>(oldLength);
    if (const int error = writeRange(file, bytes, 0, bytes.size(), length)) {
        cut(file, length);
        return failureOf(error);
    }
    return length + bytes.size();
}

bool DiskFiles::exists(const std::string& path) const
{
    struct stat status { };
    return checkPath(path) == 0 && stat(hostPath(path).c_str(), &status) == 0;
}

Result<void> DiskFiles::createDirectory(const std::string& path)
{
    if (const int error = checkPath(path))
        return failureOf(error);
    const std::string target = hostPath(path);
    for (std::size_t end = target.find('/', 1);; end = target.find('/', end + 1)) {
        const std::string parent = target.substr(0, end);
        const int error = isDirectory(parent) || mkdir(parent.c_str(), directoryMode) == 0 ? 0 : errno;
        if (error != 0 && !isDirectory(parent))
            return failureOf(error);
        if (end == std::string::npos)
            return {};
    }
}

Result<void> DiskFiles::remove(const std::string& path)
{
    if (const int error = checkPath(path))
        return failureOf(error);
    const std::string target = hostPath(path);
    if (target == hostPath("/"))
        return failureOf(EBUSY);
    std::error_code error;
    const auto removed = std::filesystem::remove_all(target, error);
    if (error)
        return failureOf(error.value());
    if (removed == 0)
        return failureOf(ENOENT);
    return {};
}
