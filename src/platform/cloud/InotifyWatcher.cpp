// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/InotifyWatcher.h"

#include "base/PathBytes.h"
#include "platform/cloud/InotifyWatches.h"

#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

namespace cvtamber {

namespace {

constexpr qsizetype BufferSize = 65536;
// A storm of events leaves room for the rest of the program; what is left comes in the next turn.
constexpr int ReadsInATurn = 16;

} // namespace

InotifyWatcher::InotifyWatcher(Handlers handlers)
    : _handlers(std::move(handlers))
    , _watches(std::make_shared<InotifyWatches>())
    , _buffer(BufferSize, Qt::Uninitialized)
{
    if (_watches->descriptor() < 0)
        return;
    _notifier = std::make_unique<QSocketNotifier>(_watches->descriptor(), QSocketNotifier::Read);
    QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(), [this] { readEvents(); });
}

InotifyWatcher::~InotifyWatcher() = default;

std::shared_ptr<FolderWatches> InotifyWatcher::watches()
{
    return _watches;
}

void InotifyWatcher::readEvents()
{
    Report report;
    for (int i = 0; i < ReadsInATurn; ++i) {
        const ssize_t size =
            ::read(_watches->descriptor(), _buffer.data(), static_cast<size_t>(_buffer.size()));
        if (size <= 0)
            break;
        for (ssize_t at = 0; at < size;) {
            // Copied, since the buffer promises no alignment.
            inotify_event event = {};
            std::memcpy(&event, _buffer.constData() + at, sizeof event);
            const char *name = event.len > 0 ? _buffer.constData() + at + sizeof event : "";
            readEvent(event, name, report);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    if (report.everything)
        _handlers.everythingChanged();
    for (const FileURL &folder : report.changed)
        _handlers.changed(folder);
    for (const FileURL &folder : report.appeared)
        _handlers.appeared(folder);
}

void InotifyWatcher::readEvent(const inotify_event &event, const char *name, Report &report)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        report.everything = true;
        return;
    }
    const FileURL folder = _watches->folderOf(event.wd);
    if ((event.mask & IN_IGNORED) != 0)
        _watches->forget(event.wd);
    // A hidden file that grows is one that gets its name later.
    const bool isGrowingTemporary = (event.mask & IN_MODIFY) != 0 && name[0] == '.';
    if (folder.isNil() || isGrowingTemporary)
        return;
    report.changed.insert(folder);
    const bool isArrival = (event.mask & (IN_CREATE | IN_MOVED_TO)) != 0;
    if (isArrival && (event.mask & IN_ISDIR) != 0)
        report.appeared.insert(folder.appendingDirectory(pathOfBytes(QByteArrayView(name))));
}

} // namespace cvtamber
