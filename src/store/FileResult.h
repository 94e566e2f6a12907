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

// What a piece of disk work tells of an error code. Pure functions; any thread.
inline FileResult failedBecause(const QString &why)
{
    return {FileResult::Outcome::Failed, why};
}
// Ok without an error, AlreadyExists for a name in use, else Failed.
FileResult resultOf(const std::error_code &error);
// The same, but Missing for what is not there.
FileResult resultOfFinding(const std::error_code &error);
// Failed: the work is done, but a power failure may undo it.
FileResult notSynced(const std::error_code &error);

bool saysMissing(const std::error_code &error);

} // namespace cvtamber
