// SPDX-License-Identifier: GPL-3.0-or-later
#include "powercut/RecordingFileOperations.h"

namespace cvtamber {

using What = RecordedCall::What;

class RecordedFile final : public WritableFile
{
public:
    RecordedFile(RecordingFileOperations &recording, std::unique_ptr<WritableFile> file, int number)
        : _recording(recording)
        , _file(std::move(file))
        , _number(number)
    {}

    std::error_code write(const QByteArray &bytes) override
    {
        const std::error_code error = _file->write(bytes);
        if (!error)
            _recording.note(What::Write, _recording._root, {}, _number, bytes);
        return error;
    }
    std::error_code sync() override
    {
        const std::error_code error = _file->sync();
        if (!error)
            _recording.note(What::SyncFile, _recording._root, {}, _number);
        return error;
    }
    void takeOverPermissions(const QString &path) override { _file->takeOverPermissions(path); }
    FileStamp stamp() const override { return _file->stamp(); }

private:
    RecordingFileOperations &_recording;
    std::unique_ptr<WritableFile> _file;
    int _number;
};

void RecordingFileOperations::note(What what, const QString &path, const QString &other, int file,
                                   const QByteArray &bytes)
{
    if (_root.isEmpty() || (path != _root && !path.startsWith(_root + u'/')))
        return;
    const auto relative = [this](const QString &absolute) { return absolute.mid(_root.size() + 1); };
    _calls.push_back({what, relative(path), relative(other), file, bytes});
}

std::error_code RecordingFileOperations::noted(std::error_code error, What what, const QString &path,
                                               const QString &other)
{
    if (!error)
        note(what, path, other);
    return error;
}

bool RecordingFileOperations::isBetweenFileSystems(const QString &one, const QString &other) const
{
    const QString inside = _otherFileSystem + u'/';
    return !_otherFileSystem.isEmpty() && one.startsWith(inside) != other.startsWith(inside);
}

std::unique_ptr<WritableFile> RecordingFileOperations::createFile(const QString &path, std::error_code &error)
{
    std::unique_ptr<WritableFile> file = _operations.createFile(path, error);
    if (!file)
        return nullptr;
    note(What::CreateFile, path, {}, ++_lastFile);
    return std::make_unique<RecordedFile>(*this, std::move(file), _lastFile);
}

std::error_code RecordingFileOperations::makeFolder(const QString &path)
{
    return noted(_operations.makeFolder(path), What::MakeFolder, path);
}

std::error_code RecordingFileOperations::rename(const QString &from, const QString &to)
{
    if (isBetweenFileSystems(from, to))
        return std::make_error_code(std::errc::cross_device_link);
    return noted(_operations.rename(from, to), What::Rename, from, to);
}

std::error_code RecordingFileOperations::renameToNewName(const QString &from, const QString &to)
{
    if (isBetweenFileSystems(from, to))
        return std::make_error_code(std::errc::cross_device_link);
    return noted(_operations.renameToNewName(from, to), What::Rename, from, to);
}

std::error_code RecordingFileOperations::exchange(const QString &one, const QString &other)
{
    if (isBetweenFileSystems(one, other))
        return std::make_error_code(std::errc::cross_device_link);
    return noted(_operations.exchange(one, other), What::Exchange, one, other);
}

std::error_code RecordingFileOperations::link(const QString &from, const QString &to)
{
    if (isBetweenFileSystems(from, to))
        return std::make_error_code(std::errc::cross_device_link);
    return noted(_operations.link(from, to), What::Link, from, to);
}

std::error_code RecordingFileOperations::removeFile(const QString &path)
{
    return noted(_operations.removeFile(path), What::RemoveFile, path);
}

std::error_code RecordingFileOperations::removeFolder(const QString &path)
{
    return noted(_operations.removeFolder(path), What::RemoveFolder, path);
}

std::error_code RecordingFileOperations::syncFolder(const QString &path)
{
    return noted(_operations.syncFolder(path), What::SyncFolder, path);
}

} // namespace cvtamber
