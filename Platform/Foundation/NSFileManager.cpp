#include "Foundation/NSFileManager.h"

#include "Foundation/FileCache.h"
#include "Foundation/NSString.h"
#include "Phone/Phone.h"

#include <cerrno>
#include <string_view>

NS_IMPLEMENTATION(NSFileManager)

namespace {

constexpr long fileWriteUnknownError = 512;
constexpr long fileNoSuchFileError = 4;
constexpr long fileWriteNoPermissionError = 513;
constexpr long propertyListWriteError = 3851;

long cocoaCodeOf(int systemError)
{
    switch (systemError) {
    case ENOENT:
        return fileNoSuchFileError;
    case EACCES:
    case EPERM:
    case EROFS:
        return fileWriteNoPermissionError;
    default:
        return fileWriteUnknownError;
    }
}

std::string_view lastComponent(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

std::shared_ptr<NSError> errorFor(const std::string& path, const char* verb, const Result<void>& result)
{
    if (result)
        return nullptr;
    return std::make_shared<NSError>(NSError::cocoaDomain, cocoaCodeOf(result.failure().code),
        stringWithFormat("“%@” couldn’t be %@: %@.", { lastComponent(path), verb, result.failure().text }));
}

const Failure noFileService { "no file service", ENOSYS };

} // namespace

NSFileManager& NSFileManager::defaultManager()
{
    static const auto manager = std::make_shared<NSFileManager>();
    return *manager;
}

bool NSFileManager::fileExistsAtPath(const std::string& path) const
{
    const auto& files = Phone::current().files;
    return files && files->exists(path);
}

std::shared_ptr<NSError> NSFileManager::createDirectoryAtPath(const std::string& path)
{
    const auto& files = Phone::current().files;
    return errorFor(path, "created", files ? files->createDirectory(path) : noFileService);
}

std::shared_ptr<NSError> NSFileManager::removeItemAtPath(const std::string& path)
{
    const auto& files = Phone::current().files;
    return errorFor(path, "removed", files ? files->remove(path) : noFileService);
}

std::optional<Bytes> dataWithContentsOfFile(const std::string& path)
{
    const auto& files = Phone::current().files;
    return files ? files->read(path) : std::nullopt;
}

std::optional<FileStamp> stampOfFile(const std::string& path)
{
    const auto& files = Phone::current().files;
    return files ? files->stamp(path) : std::nullopt;
}

bool writeToFile(const Bytes& data, const std::string& path, Atomically atomically)
{
    const auto& files = Phone::current().files;
    if (!files)
        return false;
    return bool(atomically == Atomically::Yes ? files->replace(path, data) : files->overwrite(path, data));
}

std::optional<Dictionary> dictionaryWithContentsOfFile(const std::string& path)
{
    const auto data = dataWithContentsOfFile(path);
    const Value root = data ? propertyListWithData(*data) : Value();
    return root.dictionary() ? std::optional(*root.dictionary()) : std::nullopt;
}

Value cachedPropertyListInFile(const std::string& path)
{
    static FileCache<Value> lists;
    return lists.get(path, stampOfFile(path), [&] {
        const auto data = dataWithContentsOfFile(path);
        return data ? propertyListWithData(*data) : Value();
    });
}

SerializedPropertyList dataWithPropertyList(const Value& value)
{
    SerializedPropertyList result;
    std::string reason = "no property list service";
    if (const auto& lists = Phone::current().propertyLists)
        result.data = lists->writeBinary(value, reason);
    if (!result.data)
        result.error = std::make_shared<NSError>(NSError::cocoaDomain, propertyListWriteError, reason);
    return result;
}

Value propertyListWithData(const Bytes& data)
{
    const auto& lists = Phone::current().propertyLists;
    return lists ? lists->read(data).value_or(Value()) : Value();
}
