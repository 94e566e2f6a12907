// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"

#include <QStringView>

namespace cvtamber {

// The name of a file or folder of ours while it is being made: ".cvtamber-" and 13 digits to the base 36, enough for 64
// random bits. A name in any other form is somebody else's.
bool isHiddenName(QStringView name);

// A path in the folder that nothing has, as far as chance goes.
QString freshHiddenPath(const QString &folder);

// A file on its way: written and synced under a hidden name, then moved into place in one step.
//
//   make() -> moveToNewName() or replace()      the hidden name is gone
//          -> exchangeWith()                    the hidden name has what stood there; may be moved on
// Whatever has the hidden name at the end goes with this object, unless keep() was called. The folder is synced
// by whoever uses this. Any thread. The operations outlive it.
class HiddenFile
{
public:
    HiddenFile(FileOperations &operations, QString folder);
    HiddenFile(const HiddenFile &) = delete;
    HiddenFile &operator=(const HiddenFile &) = delete;
    ~HiddenFile();

    // With the permissions of a new file, or those of a file that is there. Once.
    std::error_code make(const QByteArray &bytes, const QString &permissionsOf = {});
    // Of the file that was made, wherever it is now.
    const FileStamp &stamp() const { return _stamp; }
    // The hidden one.
    const QString &path() const { return _path; }

    std::error_code moveToNewName(const QString &path);
    std::error_code replace(const QString &path);
    std::error_code exchangeWith(const QString &path);
    void keep() { _isHere = false; }

private:
    std::unique_ptr<WritableFile> create(std::error_code &error);

    FileOperations &_operations;
    QString _folder;
    QString _path;
    FileStamp _stamp;
    bool _isHere = false;
};

} // namespace cvtamber
