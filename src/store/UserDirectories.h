// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

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

} // namespace cvtamber
