// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "store/FileResult.h"
#include "store/KnownRecords.h"
#include "store/StoreProblems.h"

namespace cvtamber {

class CloudContainer;
class FileCoordinator;
class Locations;
class NotificationCenter;
class StoreDisk;
class SystemLog;
class Trash;

// What every object of the store is given. All of it is made at start-up and outlives the store.
struct StoreContext
{
    RunLoop &runLoop;
    StoreDisk &disk;
    FileCoordinator &coordinator;
    CloudContainer &cloud;
    Trash &trash;
    NotificationCenter &notifications;
    StoreProblems &problems;
    SystemLog &log;
    // Saves that are due later. Each holds what it saves, which so goes before all of this does.
    CallGroup saves{runLoop};
    KnownRecords knownRecords{};
};

// The URL for a log line: a document's title is masked, the store's own names are not.
QString loggedURL(const FileURL &url);

// Tells StoreProblems what failed; nothing when it did not.
void tellProblem(const StoreContext &context, StoreProblem::What what, const FileURL &url,
                 const FileResult &result);
// The same, and a line in the log.
void logProblem(const StoreContext &context, StoreProblem::What what, const FileURL &url,
                const FileResult &result);

} // namespace cvtamber
