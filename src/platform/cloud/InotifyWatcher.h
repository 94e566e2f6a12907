// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/FolderWatcher.h"

#include <QByteArray>
#include <QSocketNotifier>

#include <unordered_set>

struct inotify_event;

namespace cvtamber {

class InotifyWatches;

// What Linux reports about folders. Needs the main thread's event loop.
class InotifyWatcher final : public FolderWatcher
{
public:
    explicit InotifyWatcher(Handlers handlers);
    ~InotifyWatcher() override;

    std::shared_ptr<FolderWatches> watches() override;

private:
    // What one turn of the loop has read, each folder once.
    struct Report
    {
        std::unordered_set<FileURL> changed;
        std::unordered_set<FileURL> appeared;
        bool everything = false;
    };

    void readEvents();
    void readEvent(const inotify_event &event, const char *name, Report &report);

    Handlers _handlers;
    std::shared_ptr<InotifyWatches> _watches;
    QByteArray _buffer;
    // Goes before the descriptor that it looks at.
    std::unique_ptr<QSocketNotifier> _notifier;
};

} // namespace cvtamber
