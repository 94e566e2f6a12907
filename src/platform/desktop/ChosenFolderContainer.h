// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/SyncedFolderContainer.h"

#include <memory>
#include <mutex>

namespace cvtamber {

class UserDefaults;

// The cloud container in the folder that the person has chosen: the user default "cloudFolder", an absolute path. Without
// one, or where that folder is not there, there is no container.
//
// What is given outlives it.
class ChosenFolderContainer final : public CloudContainer
{
public:
    struct Surroundings
    {
        RunLoop &runLoop;
        TaskRunner &tasks;
        FileOperations &operations;
        SystemLog &log;
        UserDefaults &defaults;
    };

    explicit ChosenFolderContainer(const Surroundings &surroundings);
    ~ChosenFolderContainer() override;

    // Takes what is chosen now. Not while a store lies in the container: it would lose its place.
    void takeChoice();

    FileURL url() const override;
    bool isUbiquitousItem(const FileURL &url) const override;
    FileResult startDownloading(const FileURL &url) override;
    std::unique_ptr<MetadataQuery> makeQuery() override;

private:
    std::shared_ptr<SyncedFolderContainer> container() const;

    const Surroundings _surroundings;
    QString _folder;
    // Guards the pointer alone, for url(), which start-up asks from the background.
    mutable std::mutex _mutex;
    std::shared_ptr<SyncedFolderContainer> _container;
};

} // namespace cvtamber
