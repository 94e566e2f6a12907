// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileResult.h"
#include "store/StoreContext.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <memory>

namespace cvtamber {

class Locations;
class TaskRunner;

// The folder "Inbox" in the documents folder: files that other programs hand over are copied into it, and the
// copies are given out one after the other.
//
// A file: waits -> is read in the background -> is written to the Inbox under a free name -> waits until the receiver is ready
// -> given out. Files keep the order in which they came. The person's own file is only ever read. What cannot be
// copied is told once and left out. Thread: main thread. Owner: start-up; its surroundings outlive it. Only the
// one running instance may have one.
class Inbox
{
public:
    struct Receiver
    {
        // Whether the next file may come now; asked again at giveOut().
        std::function<bool()> isReady;
        std::function<void(const FileURL &copy)> take;
        // A sentence for the person.
        std::function<void(const QString &sentence)> refused;
        // Of all that was handed over, every file has been copied or refused.
        std::function<void()> copied;
    };

    Inbox(StoreContext &store, TaskRunner &tasks, Locations &locations);
    Inbox(const Inbox &) = delete;
    Inbox &operator=(const Inbox &) = delete;
    ~Inbox();

    static FileURL folder(Locations &locations);
    // Removes everything that is there now; a folder with something in it goes to the trash.
    static void removeAll(StoreContext &store, Locations &locations);

    void setReceiver(Receiver receiver) { _receiver = std::move(receiver); }
    // Absolute paths.
    void handOver(const QStringList &paths);
    // Gives the next copies out, as far as the receiver takes them.
    void giveOut();
    bool isCopying() const { return _copying || !_waiting.empty(); }
    // Nothing waits and nothing is being copied.
    bool isIdle() const { return _copies.empty() && !isCopying(); }

private:
    void copyNext();
    void fileRead(const ReadResult &read);
    void write(const QString &name, const QByteArray &bytes, int attempt);
    void copyEnded();
    // With the reason, where a person can act on it; the log has it whatever it is.
    void refuse(const QString &sentence, const FileResult &result = {});

    StoreContext &_store;
    TaskRunner &_tasks;
    FileURL _folder;
    Receiver _receiver;
    std::deque<QString> _waiting;
    std::deque<FileURL> _copies;
    // The path of the file that is being copied; what comes back after this object has gone finds it expired.
    std::shared_ptr<const QString> _copying;
};

} // namespace cvtamber
