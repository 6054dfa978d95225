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

void TurnFiles::note(const std::string& path, const Bytes& bytes, const Result<void>& written)
{
    _stamps.erase(hostPath(path));
    if (Content* content = contentOf(path))
        *content = written ? Content { true, bytes } : Content();
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

Result<void> TurnFiles::overwrite(const std::string& path, const Bytes& bytes)
{
    const Content* content = contentOf(path);
    auto written =
        content && content->isKnown ? _disk->overwrite(path, bytes, content->bytes) : _disk->overwrite(path, bytes);
    note(path, bytes, written);
    return written;
}

Result<void> TurnFiles::replace(const std::string& path, const Bytes& bytes)
{
    auto written = _disk->replace(path, bytes);
    note(path, bytes, written);
    return written;
}

Result<std::size_t> TurnFiles::append(const std::string& path, const Bytes& bytes)
{
    _stamps.erase(hostPath(path));
    if (Content* content = contentOf(path))
        *content = {};
    return _disk->append(path, bytes);
}

Result<void> TurnFiles::createDirectory(const std::string& path)
{
    _stamps.clear();
    return _disk->createDirectory(path);
}

Result<void> TurnFiles::remove(const std::string& path)
{
    forget();
    return _disk->remove(path);
}
