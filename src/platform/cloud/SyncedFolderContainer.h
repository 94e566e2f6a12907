// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/FolderFollower.h"
#include "store/CloudContainer.h"

#include <map>
#include <memory>
#include <mutex>

namespace cvtamber {

// A folder that another program keeps in sync with a cloud.
//
// The folder is a person's choice, so it may be a link to another one. Its "Documents" directory is made when
// the container is asked for and the folder is there. Only Nextcloud's and ownCloud's programs can be asked for
// a document's bytes; docs/cloud-folder.md tells about each program. What is given outlives it; its queries and
// requests under way may outlive it.
class SyncedFolderContainer final : public CloudContainer
{
public:
    // Sockets of sync programs are looked for below the runtime folder; empty when there is none.
    SyncedFolderContainer(const QString &folder, const FolderFollower::Surroundings &surroundings,
                          const QString &runtimeFolder);
    ~SyncedFolderContainer() override;
    // With the system's own watching and the session's runtime folder.
    SyncedFolderContainer(const QString &folder, RunLoop &runLoop, TaskRunner &tasks,
                          FileOperations &operations, SystemLog &log);

    FileURL url() const override;
    bool isUbiquitousItem(const FileURL &url) const override;
    FileResult startDownloading(const FileURL &url) override;
    std::unique_ptr<MetadataQuery> makeQuery() override;

private:
    FileURL placeholderOf(const FileURL &url) const;
    QString socketFor(const FileURL &placeholder) const;
    void ask(const QString &socket, const FileURL &placeholder);

    const FolderFollower::Surroundings _surroundings;
    const FileURL _folder;
    const QString _runtimeFolder;
    // Where "Documents" leads to, when it was asked for last; url() is asked from the background too.
    mutable std::mutex _mutex;
    mutable QString _documents;
    // Of a socket: the request that was made last of those that have been answered, and whether it could not be handed over.
    // Answers come from the pool in any order.
    struct Answer
    {
        quint64 request = 0;
        bool isDeaf = false;
    };
    std::shared_ptr<std::map<QString, Answer>> _answers;
    quint64 _requests = 0;
};

} // namespace cvtamber
