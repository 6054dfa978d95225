#include "Shared/TurnFiles.h"

TurnFiles::TurnFiles(std::shared_ptr<DiskFiles> disk, const std::vector<std::string>& readOnce)
    : _disk(std::move(disk))
{
    for (const std::string& path : readOnce)
        _contents.try_emplace(hostPath(path));
}

void TurnFiles::beginTurn()
{
    forget();
    _inTurn = true;
}

void TurnFiles::endTurn()
{
    _inTurn = false;
    forget();
}

void TurnFiles::forget()
{
    _stamps.clear();
    for (auto& [path, content] : _contents)
        content = {};
}

TurnFiles::Content* TurnFiles::contentOf(const std::string& path) const
{
    const auto found = _inTurn ? _contents.find(hostPath(path)) : _contents.end();
    return found == _contents.end() ? nullptr : &found->second;
}

void TurnFiles::note(const std::string& path, const Bytes& bytes, const std::optional<FileError>& error)
{
    _stamps.erase(hostPath(path));
    if (Content* content = contentOf(path))
        *content = error ? Content() : Content { true, bytes };
}

std::optional<Bytes> TurnFiles::read(const std::string& path) const
{
    Content* content = contentOf(path);
    if (!content)
        return _disk->read(path);
    if (!content->isKnown)
        *content = { true, _disk->read(path) };
    return content->bytes;
}

std::optional<FileStamp> TurnFiles::stamp(const std::string& path) const
{
    if (!_inTurn)
        return _disk->stamp(path);
    const auto [stamp, isNew] = _stamps.try_emplace(hostPath(path));
    if (isNew)
        stamp->second = _disk->stamp(path);
    return stamp->second;
}

std::optional<FileError> TurnFiles::overwrite(const std::string& path, const Bytes& bytes)
{
    const Content* content = contentOf(path);
    auto error =
        content && content->isKnown ? _disk->overwrite(path, bytes, content->bytes) : _disk->overwrite(path, bytes);
    note(path, bytes, error);
    return error;
}

std::optional<FileError> TurnFiles::replace(const std::string& path, const Bytes& bytes)
{
    auto error = _disk->replace(path, bytes);
    note(path, bytes, error);
    return error;
}

std::optional<FileError> TurnFiles::append(const std::string& path, const Bytes& bytes, std::size_t& length)
{
    _stamps.erase(hostPath(path));
    if (Content* content = contentOf(path))
        *content = {};
    return _disk->append(path, bytes, length);
}

std::optional<FileError> TurnFiles::createDirectory(const std::string& path)
{
    _stamps.clear();
    return _disk->createDirectory(path);
}

std::optional<FileError> TurnFiles::remove(const std::string& path)
{
    forget();
    return _disk->remove(path);
}
