// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/cloud/FolderFollower.h"
#include "platform/cloud/QueryResults.h"
#include "store/MetadataQuery.h"

#include <memory>

namespace cvtamber {

// Lists the documents below a directory that another program keeps in sync.
//
// Results stand in path order at first (a folder's documents by name, then its folders), additions come last.
// A version that replaces another is shown as on its way and then as here, so that who follows the items hears
// of it. A folder that cannot be read keeps its documents. Gathering waits for the root for as long as that
// cannot be read, and for a folder below it for two more tries. What cannot be told of a plain folder is
// false: whether a document that is here has been uploaded.
// The scope is not used: the predicate's directory says where. Both hold from the next start. A handler may
// stop or destroy the query.
class SyncedFolderQuery final : public MetadataQuery
{
public:
    // What is in the surroundings outlives the query.
    explicit SyncedFolderQuery(const FolderFollower::Surroundings &surroundings);
    ~SyncedFolderQuery() override;

    void setSearchScope(Scope) override {}
    void setPredicate(const FileURL &directory, const QString &filter) override;
    void setHandlers(Handlers handlers) override;
    void start() override;
    void stop() override;
    bool isStarted() const override { return _follower != nullptr; }
    void disableUpdates() override;
    void enableUpdates() override;
    const QList<MetadataItem> &results() const override { return _results.items(); }

private:
    void apply(const FolderTree::Change &change);

    const FolderFollower::Surroundings _surroundings;
    FileURL _directory;
    QString _filter;
    Handlers _handlers;
    bool _isEnabled = true;
    bool _isGathered = false;
    QueryResults _results;
    // As the results are; kept while it is stopped, so that a folder that cannot be read at the next start keeps
    // its documents. Null until a start with the present predicate.
    std::shared_ptr<FolderTree> _tree;
    // While it is started.
    std::shared_ptr<FolderFollower> _follower;
};

} // namespace cvtamber
