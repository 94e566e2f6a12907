// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/SyncedFolderContainer.h"

#include <memory>
#include <mutex>

namespace cvtamber {

class UserDefaults;

// The cloud container in the folder that the person has chosen (CloudFolderDefault). Without one, or where that folder is
// not there, there is no container. Nor is there one where a store has been opened in that folder and its mark is not
// there: the folder is the place under a disk that is not mounted, and what is written to it would be covered later. To
// choose the folder again ends that.
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
    void storeOpened() override;

private:
    struct Choice
    {
        QString folder;
        std::shared_ptr<SyncedFolderContainer> container;
        bool hasHeldStore = false;
    };

    Choice choice() const;
    std::shared_ptr<SyncedFolderContainer> container() const { return choice().container; }

    const Surroundings _surroundings;
    // Guards the choice, for url(), which start-up asks from the background.
    mutable std::mutex _mutex;
    Choice _choice;
};

} // namespace cvtamber
