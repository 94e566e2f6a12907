// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreDisk.h"

namespace cvtamber {

class HiddenFile;

// Replaces a file without losing a version that another program has written.
//
//   what stands there          what happens
//   nothing                    the new version gets the name, which must still be free
//   the version known, or
//   the same bytes             the two change places; what comes out is looked at
//   another version            gets a second, free name first, synced; then as above
//   something else came out    another program was faster: gets a free name too
// Where two names cannot change places a last look and a rename take that step. Used once. Any thread.
class FileReplacement
{
public:
    FileReplacement(FileOperations &operations, FileURL url, QByteArray bytes, FileStamp known,
                    StoreDisk::OtherVersion otherVersion);

    WriteResult run();

private:
    std::error_code place(HiddenFile &file);
    std::error_code placeOver(HiddenFile &file, const FileStamp &there);
    std::error_code keepWhatCameOut(HiddenFile &file);
    // Each makes the version that stands there the known one.
    std::error_code keepWhatStandsThere();
    void forgetCopy();
    std::error_code linkToFreeName();
    std::error_code copyToFreeName(const QByteArray &bytes);

    FileOperations &_operations;
    FileURL _url;
    QString _path;
    QString _folder;
    QByteArray _bytes;
    FileStamp _known;
    StoreDisk::OtherVersion _otherVersion;
    FileURL _kept;
};

} // namespace cvtamber
