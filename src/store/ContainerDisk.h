// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/ContainerListing.h"
#include "store/Document.h"

namespace cvtamber {

using FileCompletion = std::function<void(const FileResult &)>;

// What a container does on the disk; it knows nothing of lists. Cheap to make. Main thread.
//
// Completions run once: from the loop, or inside the call where a function says so. Before a document's file is moved
// or removed the document must have nothing left to write, or its next autosave would make the old file again: it is closed
// first, and waited for, unless it is settled.
class ContainerDisk
{
public:
    explicit ContainerDisk(StoreContext &context)
        : _context(context)
    {}

    // What could be read. A directory that could not is told to StoreProblems; leftovers of ours are given
    // to the sweep.
    ContainerListing read(const FileURL &directory) const;

    // What the document has not saved yet is dropped with it. One that could not be created because its name was
    // in use has no file: what stands there is another's and stays.
    void removeDocument(const std::shared_ptr<Document> &document, FileCompletion completion) const;

    enum class MoveKind {
        // With the log lines of a coordinated move.
        Coordinated,
        Quiet,
        // Quiet, and inside the call, unless something else is at work on either place or a document is not saved yet.
        AtOnce,
    };
    // A file, or a folder with the documents in it: in the background, once they have saved and closed. When one
    // cannot be saved it stays open with its changes, and nothing is moved.
    void move(MoveKind kind, const FileURL &from, const FileURL &to, const DocumentGroup &documents,
              const FileCompletion &completion) const;
    // In the background, with the log lines that go with it; the completion may be empty. Telling StoreProblems is the
    // caller's business, who knows what was meant.
    void coordinatedMoveItemAtURL(const FileURL &from, const FileURL &to, FileCompletion completion) const;
    void coordinatedRemoveItemAtURL(const FileURL &url, FileCompletion completion) const;

    // What such a move has done: a failure may come after the item has its new place, when a folder could not be synced.
    bool hasMoved(const FileURL &from, const FileURL &to, const FileResult &result) const;

    // Takes every document out of the directory, at once and without a word about failures: to the trash, since nobody has
    // seen it in a list; those that only a placeholder stands for are removed.
    void removeStrayDocuments(const FileURL &directory) const;
    // The same for every "folder.dat" below the directory.
    void removeStrayFolderRecords(const FileURL &directory) const;

    // A name for a new directory that nothing has; each try is a fresh UUID.
    static QString unusedName(const StoreContext &context, const FileURL &directory);
    // Makes a directory under a fresh UUID and those above it that are missing; its URL, nil when it cannot be
    // made.
    FileURL makeUniqueFolder(const FileURL &parent) const;
    // With those above it that are missing; not in a cloud container that is not there.
    FileResult makeFolders(const FileURL &directory) const;

    // It is closed, holds nothing unsaved, and nobody is working on its file.
    bool isSettled(const Document &document) const;

private:
    void settle(const DocumentGroup &documents, FileCompletion settled) const;
    FileCompletion logged(const FileURL &url, FileCompletion completion) const;

    StoreContext &_context;
};

} // namespace cvtamber
