// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "store/StoreDisk.h"

#include <functional>

namespace cvtamber {

// The store's asynchronous disk work.
//
// Work on one path, or on a folder and what lies below it, is done in the order in which it was asked for;
// the rest runs side by side in the background. Each completion runs exactly once, on the main thread, from
// the loop and never from inside the call; it may be empty. It does not run when the program ends first, but
// the work that was asked for is done all the same. Thread: main thread. Owner: made at start-up, outlives
// its users.
class FileCoordinator : public InterfaceBase
{
public:
    template<typename Result> using Completion = std::function<void(const Result &)>;

    virtual void read(const FileURL &url, Completion<ReadResult> completion) = 0;
    virtual void create(const FileURL &url, const QByteArray &bytes, Completion<WriteResult> completion) = 0;
    // `known` as for StoreDisk::replace.
    virtual void replace(const FileURL &url, const QByteArray &bytes, const FileStamp &known,
                         StoreDisk::OtherVersion otherVersion, Completion<WriteResult> completion) = 0;
    // A file; or a folder, which goes to the trash when it still holds anything that is not ours.
    virtual void remove(const FileURL &url, Completion<FileResult> completion) = 0;
    virtual void move(const FileURL &from, const FileURL &to, Completion<FileResult> completion) = 0;
    // The directory's leftovers of those names go to the trash unless they are young; without names all that are found in it.
    virtual void sweep(const FileURL &directory, const QStringList &leftovers) = 0;

    // Work is asked for and not completed on this item, on one below it, or on a folder that it lies in.
    virtual bool isBusy(const FileURL &url) const = 0;
};

} // namespace cvtamber
