// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"
#include "store/FileURL.h"

#include <QByteArray>
#include <QString>

namespace cvtamber {

// How a piece of disk work ended.
struct FileResult
{
    enum class Outcome {
        Ok,
        // The destination's name is in use; nothing was changed.
        AlreadyExists,
        // What was to be read, moved or removed is not there.
        Missing,
        // Only a placeholder is here: the bytes are still in the cloud.
        NotDownloaded,
        Failed,
    };

    Outcome outcome = Outcome::Ok;
    // What went wrong, as a sentence part for a person ("no space left on device"), without a path or a name;
    // empty when Ok.
    QString message;

    bool ok() const { return outcome == Outcome::Ok; }
};

struct ReadResult : FileResult
{
    QByteArray bytes;
    FileStamp stamp;
};

struct WriteResult : FileResult
{
    // Of the file as it was written.
    FileStamp stamp;
    // Where the version stands that another program had written meanwhile; nil when there was none.
    FileURL keptOther;
};

} // namespace cvtamber
