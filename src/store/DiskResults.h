// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileResult.h"

namespace cvtamber {

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
