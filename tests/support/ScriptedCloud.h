// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/CloudContainer.h"
#include "store/TamberUbiquitousItem.h"

#include <memory>

namespace cvtamber {

class RunLoop;

// A cloud container whose items, and the moments of whose reports, the test says. What lies on the disk is the
// test's business too. Its queries may outlive it.
class ScriptedCloud final : public CloudContainer
{
public:
    ScriptedCloud(RunLoop &runLoop, FileURL url);
    ~ScriptedCloud() override;

    // What the test makes happen. Nobody hears of a changed item before gather() or update().
    // Adds the item behind the others, or changes it where it stands; `state` as TamberUbiquitousItem::State.
    MetadataItem &setItem(const FileURL &url, qint32 state = TamberUbiquitousItem::Downloaded,
                          qint64 size = 0);
    void removeItem(const FileURL &url);
    // In the order in which they are reported.
    QList<MetadataItem> &items();
    const QList<MetadataItem> &items() const;
    // Tells the started queries that have not gathered yet; then those that have.
    void gather();
    void update();
    // The person has no container any more, or has one again.
    void setMissing(bool isMissing) { _isMissing = isMissing; }
    void setDownloadResult(const FileResult &result) { _downloadResult = result; }

    // What was asked for.
    const QList<FileURL> &downloads() const { return _downloads; }
    int queriesMade() const;
    int queriesStarted() const;
    // Of the query made last.
    MetadataQuery::Scope scope() const;

    FileURL url() const override { return _isMissing ? FileURL() : _url; }
    bool isUbiquitousItem(const FileURL &url) const override;
    FileResult startDownloading(const FileURL &url) override;
    std::unique_ptr<MetadataQuery> makeQuery() override;

private:
    class Query;
    struct Shared;

    RunLoop &_runLoop;
    FileURL _url;
    std::shared_ptr<Shared> _shared;
    bool _isMissing = false;
    FileResult _downloadResult;
    QList<FileURL> _downloads;
};

} // namespace cvtamber
