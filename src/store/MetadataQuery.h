// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "store/FileURL.h"

#include <QDateTime>
#include <QList>

#include <functional>

namespace cvtamber {

// One item of the cloud container as the query sees it now. What is not known is zero or false.
struct MetadataItem
{
    // Where the document is or will be, also while only a placeholder is here.
    FileURL url;
    qint64 size = 0;
    QDateTime contentChangeDate;
    bool isDownloaded = false;
    bool isDownloading = false;
    bool isUploaded = false;
    bool isUploading = false;
    bool hasUnresolvedConflicts = false;

    bool operator==(const MetadataItem &) const = default;
};

// Lists the files below a directory of the cloud container and says when that changes.
//
// States: made, started, gathered (the first complete listing is there), stopped; a stopped query can be
// started again and gathers anew. Reports come from the loop, never from inside start(). While updates are
// disabled the results do not change; what happened meanwhile is reported once after enableUpdates().
// Thread: main thread. Owner: the monitor.
class MetadataQuery : public InterfaceBase
{
public:
    enum class Scope { Documents, Data };

    struct Handlers
    {
        std::function<void()> gathered;
        std::function<void()> updated;
    };

    virtual void setSearchScope(Scope scope) = 0;
    // The items below the directory whose path below it is like the filter: "?" is one character, "*" any run
    // of them, separators included. The directory's own path is taken as it is.
    virtual void setPredicate(const FileURL &directory, const QString &filter) = 0;
    virtual void setHandlers(Handlers handlers) = 0;
    // Nothing is reported after stop(), also not what was on its way.
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual bool isStarted() const = 0;
    virtual void disableUpdates() = 0;
    virtual void enableUpdates() = 0;
    virtual const QList<MetadataItem> &results() const = 0;
};

} // namespace cvtamber
