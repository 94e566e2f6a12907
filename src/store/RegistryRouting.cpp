// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/RegistryRouting.h"

#include "store/ContainerListing.h"

namespace cvtamber {

namespace {

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
