// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

#include <functional>

namespace cvtamber {

class StoreDisk;
struct StoreContext;

// What is done with a user's directory that has no record: never anything that could cost a document.

// True only when nothing, not even a placeholder, is in the record's place: an error, a link or anything else
// there is not absence.
bool isCertainlyAbsent(const StoreDisk &disk, const FileURL &record);

// Below the directory is a document, a placeholder of one, or a file on its way; true also when the directory
// could not be read whole.
bool holdsDocuments(const StoreDisk &disk, const FileURL &directory);

// Removes a local directory in which nothing is but leftovers of ours, and puts one that holds anything into
// the trash; later, when work is under way in it. One that cannot be read stays, as does what is no directory.
// StoreProblems hears what became of a directory that held something. Main thread.
void clearDirectoryWithoutRecord(StoreContext &context, const FileURL &directory);

// For a directory in the cloud whose record has gone: another computer has moved or deleted it, and somebody may be writing in
// it here, which nobody would list without a record. `restore` runs once the same documents have been there for two minutes
// without a record; while documents go, a deletion is on its way. Never when none is left after that time. Main thread.
void whenDocumentsStay(StoreContext &context, const FileURL &record, std::function<void()> restore);

} // namespace cvtamber
