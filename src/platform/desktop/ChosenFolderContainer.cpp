// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/ChosenFolderContainer.h"

#include "base/ErrorText.h"
#include "base/HiddenFile.h"
#include "base/SystemLog.h"
#include "base/UserDefaults.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace cvtamber {

namespace {

constexpr const char *MarkText =
    "CVTamber keeps its documents in this folder. Please leave this file here.\n";

QString markIn(const QString &folder)
{
    return folder % u"/Documents/" % StoreMarkName;
}

} // namespace

ChosenFolderContainer::ChosenFolderContainer(const Surroundings &surroundings)
    : _surroundings(surroundings)
{
    takeChoice();
}

ChosenFolderContainer::~ChosenFolderContainer() = default;

void ChosenFolderContainer::takeChoice()
{
    UserDefaults &defaults = _surroundings.defaults;
    const QString chosen = defaults.value(CloudFolderDefault.toString()).toString();
    Choice now = choice();
    const QString folder = QDir::isAbsolutePath(chosen) ? QDir::cleanPath(chosen) : QString();
    // An empty folder is one that is never there.
    if (!now.container || folder != now.folder)
        now.container = std::make_shared<SyncedFolderContainer>(
            folder, _surroundings.runLoop, _surroundings.tasks, _surroundings.operations, _surroundings.log);
    now.folder = folder;
    now.hasHeldStore = !folder.isEmpty() && defaults.value(CloudStoreDefault.toString()).toString() == folder;
    const std::lock_guard lock(_mutex);
    _choice = std::move(now);
}

ChosenFolderContainer::Choice ChosenFolderContainer::choice() const
{
    const std::lock_guard lock(_mutex);
    return _choice;
}

FileURL ChosenFolderContainer::url() const
{
    const Choice now = choice();
    const bool isAway = now.hasHeldStore &&
                        _surroundings.operations.status(markIn(now.folder)).kind != FileStatus::Kind::File;
    return isAway ? FileURL() : now.container->url();
}

void ChosenFolderContainer::storeOpened()
{
    const Choice now = choice();
    FileOperations &operations = _surroundings.operations;
    const QString mark = markIn(now.folder);
    if (operations.status(mark).kind == FileStatus::Kind::Missing) {
        HiddenFile file(operations, QFileInfo(mark).path());
        std::error_code error = file.make(MarkText);
        if (!error)
            error = file.moveToNewName(mark);
        if (error && error != std::errc::file_exists) {
            _surroundings.log.error(u"The cloud folder could not be marked: " % errorText(error));
            return;
        }
    }
    _surroundings.defaults.setValue(CloudStoreDefault.toString(), now.folder);
    const std::lock_guard lock(_mutex);
    _choice.hasHeldStore = true;
}

bool ChosenFolderContainer::isUbiquitousItem(const FileURL &url) const
{
    return container()->isUbiquitousItem(url);
}

FileResult ChosenFolderContainer::startDownloading(const FileURL &url)
{
    return container()->startDownloading(url);
}

std::unique_ptr<MetadataQuery> ChosenFolderContainer::makeQuery()
{
    return container()->makeQuery();
}

} // namespace cvtamber
