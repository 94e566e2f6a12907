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

// What a registry makes of a report of its monitor.
enum class RegistryStep {
    Ignore,
    // The same report goes to the user that the item belongs to.
    PassToUser,
    KeepAsOrphan,
    // The item belongs to a user that is not known, or not any more.
    ForgetOrphan,
    // The record is here: the user is opened, also when one of that directory is known.
    LoadUser,
    DownloadRecord,
    RemoveUser,
    // The delegate hears that the record has changed.
    TellDataChanged,
};

struct RegistryReport
{
    CloudReport report = CloudReport::Added;
    // It is a "user.txt".
    bool isRecord = false;
    bool isDownloaded = false;
    // The user of its directory is listed.
    bool isUserKnown = false;
};

RegistryStep registryStep(const RegistryReport &item);

// A user's directory is named by a UUID: one separator and 36 characters below the registry's.
inline constexpr qsizetype UserDirectoryLength = 37;

// What a registry's monitor watches: everything below a directory named by a UUID.
QString registryFilter();

// The directory of the user that an item belongs to: the beginning of the item's path, found by length alone.
// Nil when the path is shorter.
FileURL userDirectoryOfItem(const FileURL &item, qsizetype registryPathLength);

} // namespace cvtamber
