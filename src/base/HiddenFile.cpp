// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/HiddenFile.h"

#include <QRandomGenerator>

#include <algorithm>

namespace cvtamber {

namespace {

constexpr QStringView Prefix = u".cvtamber-";
constexpr qsizetype Digits = 13;
constexpr int Base = 36;

} // namespace

bool isHiddenName(QStringView name)
{
    const auto isDigit = [](QChar unit) {
        return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z');
    };
    return name.size() == Prefix.size() + Digits && name.startsWith(Prefix) &&
           std::all_of(name.begin() + Prefix.size(), name.end(), isDigit);
}

QString freshHiddenPath(const QString &folder)
{
    const QString number = QString::number(QRandomGenerator::system()->generate64(), Base);
    return folder % u'/' % Prefix % number.rightJustified(Digits, u'0');
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
    // Some file systems refuse, and what was there may have gone meanwhile: then it has those of a new file.
    if (!permissionsOf.isEmpty())
        file->takeOverPermissions(permissionsOf);
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

std::error_code HiddenFile::exchangeWith(const QString &path)
{
    return _operations.exchange(_path, path);
}

} // namespace cvtamber
