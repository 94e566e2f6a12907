// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/HiddenFile.h"

#include <QRandomGenerator>

namespace cvtamber {

QString freshHiddenPath(const QString &folder)
{
    return folder % u'/' % HiddenNamePrefix % QString::number(QRandomGenerator::system()->generate64(), 36);
}

HiddenFile::HiddenFile(FileOperations &operations, QString folder)
    : _operations(operations)
    , _folder(std::move(folder))
{}

HiddenFile::~HiddenFile()
{
    if (_isHere)
        _operations.removeFile(_path);
}

std::unique_ptr<WritableFile> HiddenFile::create(std::error_code &error)
{
    std::unique_ptr<WritableFile> file;
    for (int tries = 0; tries < 100 && !file; ++tries) {
        _path = freshHiddenPath(_folder);
        file = _operations.createFile(_path, error);
        if (error != std::errc::file_exists)
            break;
    }
    _isHere = file != nullptr;
    return file;
}

std::error_code HiddenFile::make(const QByteArray &bytes, const QString &permissionsOf)
{
    std::error_code error;
    const auto file = create(error);
    if (!file)
        return error;
    if (!permissionsOf.isEmpty())
        error = file->takeOverPermissions(permissionsOf);
    // What was there has gone meanwhile: then this is a new file.
    if (error == std::errc::no_such_file_or_directory)
        error.clear();
    if (!error)
        error = file->write(bytes);
    if (!error)
        error = file->sync();
    _stamp = file->stamp();
    return error;
}

std::error_code HiddenFile::moveToNewName(const QString &path)
{
    const std::error_code error = _operations.renameToNewName(_path, path);
    _isHere = static_cast<bool>(error);
    return error;
}

std::error_code HiddenFile::replace(const QString &path)
{
    const std::error_code error = _operations.rename(_path, path);
    _isHere = static_cast<bool>(error);
    return error;
}

std::error_code HiddenFile::mark(const QString &end)
{
    const QString marked = freshHiddenPath(_folder) % end;
    const std::error_code error = _operations.rename(_path, marked);
    if (!error)
        _path = marked;
    return error;
}

std::error_code HiddenFile::exchangeWith(const QString &path)
{
    return _operations.exchange(_path, path);
}

} // namespace cvtamber
