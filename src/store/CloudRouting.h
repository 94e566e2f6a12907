// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

namespace cvtamber {

// What a container with folders does about an item that the cloud reports. Pure functions; any thread.

enum class CloudReport { Added, Deleted, Downloaded, DownloadedAgain };

// What is known about the item when the report comes.
struct ReportedItem
{
    // It is named "folder.dat", in exactly these letters.
    bool isFolderRecord = false;
    bool isDownloaded = false;
    bool isDirectChild = false;
    // The folder that it lies in is in the list.
    bool isFolderListed = false;
    // It is not in the list yet, but will be once its record has been read.
    bool isFolderBeingOpened = false;
};

enum class CloudStep {
    Nothing,
    ListDocument,
    UnlistDocument,
    // To the folder that it lies in, as the same report.
    HandToFolder,
    // Until its folder is listed.
    KeepAsOrphan,
    // It was deleted before its folder came.
    ForgetOrphan,
    OpenFolder,
    // Or forget that it is being opened.
    UnlistFolder,
    ReloadFolder,
    StartDownload,
};

CloudStep stepFor(CloudReport report, const ReportedItem &item);

// Only the lengths are compared: the container's path and the path of the folder that the item lies in.
bool isDirectChildByLength(const FileURL &container, const FileURL &item);

} // namespace cvtamber
