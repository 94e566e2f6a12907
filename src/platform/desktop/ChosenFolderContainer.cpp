// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/ChosenFolderContainer.h"

#include "base/UserDefaults.h"

#include <QDir>

#include <utility>

namespace cvtamber {

ChosenFolderContainer::ChosenFolderContainer(const Surroundings &surroundings)
    : _surroundings(surroundings)
{
    takeChoice();
}

ChosenFolderContainer::~ChosenFolderContainer() = default;

void ChosenFolderContainer::takeChoice()
{
    const QString chosen = _surroundings.defaults.value(QStringLiteral("cloudFolder")).toString();
    const QString folder = QDir::isAbsolutePath(chosen) ? QDir::cleanPath(chosen) : QString();
    if (_container && folder == _folder)
        return;
    _folder = folder;
    // An empty folder is one that is never there.
    auto made = std::make_shared<SyncedFolderContainer>(folder, _surroundings.runLoop, _surroundings.tasks,
                                                        _surroundings.operations, _surroundings.log);
    const std::lock_guard lock(_mutex);
    _container = std::move(made);
}

std::shared_ptr<SyncedFolderContainer> ChosenFolderContainer::container() const
{
    const std::lock_guard lock(_mutex);
    return _container;
}

FileURL ChosenFolderContainer::url() const
{
    return container()->url();
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
