// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

#include <QDateTime>

namespace cvtamber {

// One item of the cloud container, as its monitor knows it. Owner: shared by the monitor and whoever keeps it.
class TamberUbiquitousItem
{
public:
    // Bits of state().
    enum State : qint32 {
        Downloaded = 1 << 0, // the current version is here
        Uploaded = 1 << 1,
        Downloading = 1 << 2,
        Uploading = 1 << 3,
        HasConflicts = 1 << 4,
    };

    explicit TamberUbiquitousItem(FileURL url = {})
        : _url(std::move(url))
    {}

    const FileURL &url() const { return _url; }
    void setUrl(const FileURL &url) { _url = url; }
    const QDateTime &dateChanged() const { return _dateChanged; }
    void setDateChanged(const QDateTime &date) { _dateChanged = date; }
    qint32 state() const { return _state; }
    void setState(qint32 state) { _state = state; }
    bool isDownloaded() const { return (_state & Downloaded) != 0; }
    // Bytes.
    quint64 size() const { return _size; }
    void setSize(quint64 size) { _size = size; }
    // It has been seen downloaded at least once.
    bool wasDownloaded() const { return _wasDownloaded; }
    void setWasDownloaded(bool wasDownloaded) { _wasDownloaded = wasDownloaded; }

private:
    bool _wasDownloaded = false;
    qint32 _state = 0;
    QDateTime _dateChanged;
    quint64 _size = 0;
    FileURL _url;
};

} // namespace cvtamber
