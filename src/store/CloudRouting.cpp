// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CloudRouting.h"

namespace cvtamber {

namespace {

CloudStep stepForRecord(CloudReport report, const ReportedItem &item)
{
    switch (report) {
    case CloudReport::Added:
        if (item.isFolderListed || item.isFolderBeingOpened)
            return CloudStep::Nothing;
        return item.isDownloaded ? CloudStep::OpenFolder : CloudStep::StartDownload;
    case CloudReport::Deleted:
        return CloudStep::UnlistFolder;
    case CloudReport::Downloaded:
        return CloudStep::OpenFolder;
    case CloudReport::DownloadedAgain:
        if (item.isFolderBeingOpened)
            return CloudStep::Nothing;
        // Its record became newer before its user was known: without this it would stay unlisted.
        return item.isFolderListed ? CloudStep::ReloadFolder : CloudStep::OpenFolder;
    }
    return CloudStep::Nothing;
}

} // namespace

CloudStep stepFor(CloudReport report, const ReportedItem &item)
{
    if (item.isFolderRecord)
        return stepForRecord(report, item);
    switch (report) {
    case CloudReport::Added:
        if (item.isDirectChild)
            return CloudStep::ListDocument;
        return item.isFolderListed ? CloudStep::HandToFolder : CloudStep::KeepAsOrphan;
    case CloudReport::Deleted:
        if (item.isDirectChild)
            return CloudStep::UnlistDocument;
        return item.isFolderListed ? CloudStep::HandToFolder : CloudStep::ForgetOrphan;
    case CloudReport::Downloaded:
    case CloudReport::DownloadedAgain:
        break;
    }
    return CloudStep::Nothing;
}

bool isDirectChildByLength(const FileURL &container, const FileURL &item)
{
    return container.pathLength() == item.deletingLastPathComponent().pathLength();
}

} // namespace cvtamber
