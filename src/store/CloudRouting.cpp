// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CloudRouting.h"

#include "store/ContainerListing.h"

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

RegistryStep stepForRecord(const RegistryReport &item)
{
    switch (item.report) {
    case CloudReport::Added:
        return item.isDownloaded ? RegistryStep::LoadUser : RegistryStep::DownloadRecord;
    case CloudReport::Deleted:
        return item.isUserKnown ? RegistryStep::RemoveUser : RegistryStep::Ignore;
    case CloudReport::Downloaded:
        return item.isUserKnown ? RegistryStep::TellDataChanged : RegistryStep::LoadUser;
    case CloudReport::DownloadedAgain:
        return RegistryStep::TellDataChanged;
    }
    return RegistryStep::Ignore;
}

RegistryStep stepForStranger(CloudReport report)
{
    switch (report) {
    case CloudReport::Added:
    case CloudReport::Downloaded:
        return RegistryStep::KeepAsOrphan;
    case CloudReport::Deleted:
        return RegistryStep::ForgetOrphan;
    case CloudReport::DownloadedAgain:
        break;
    }
    return RegistryStep::Ignore;
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

RegistryStep registryStep(const RegistryReport &item)
{
    if (item.isRecord)
        return stepForRecord(item);
    return item.isUserKnown ? RegistryStep::PassToUser : stepForStranger(item.report);
}

QString registryFilter()
{
    return UuidPattern + QStringLiteral("/*");
}

FileURL userDirectoryOfItem(const FileURL &item, qsizetype registryPathLength)
{
    const qsizetype length = registryPathLength + UserDirectoryLength;
    if (item.pathLength() < length)
        return {};
    return FileURL::directory(item.path().first(length));
}

} // namespace cvtamber
