// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/modelcheck/StoreBench.h"

namespace cvtamber {

// Random operations on a store in the cloud container, and a sync program that does as it likes with the same
// folder: items come, as placeholders or whole, in any order, are downloaded, get newer versions and go.
//
// Whenever everything has come to rest, the lists are what was reported: a user or a folder from the moment
// when its record has been downloaded, and every document below it. No text that is owed is lost.
// Failing: disk calls fail for some time, the program starts anew in between, and the folder is unmounted and comes back.
class CloudRun
{
public:
    enum class Kind { Undisturbed, Failing };

    CloudRun(quint32 seed, Kind kind);

    // What was wrong, or null.
    QString run();
    const QStringList &story() const { return _bench.story; }

private:
    using User = StoreBench::User;
    using Container = StoreBench::Container;
    using File = std::shared_ptr<TamberDocument>;

    void step();
    void disturb();
    void startAnew();
    void changeUsers();
    void changeFolders();
    void changeFiles();
    void addFile(const Container &container);
    void renameOrMove(const Container &container, const File &file);
    bool isOwedAt(const FileURL &url) const;
    void syncAdds();
    void syncRemoves();
    void syncChanges();
    // As a placeholder or whole.
    void bring(const QString &place, const QString &text);
    void replaceByPlaceholder(const QString &place);
    void download(const FileURL &url);
    // The sync program looks at the folder and tells; not all that is new, unless that is asked for.
    void report(bool isWhole);
    QList<MetadataItem> itemsOnDisk();

    // Below the root, real names; of all documents and records that are there, in an order that is the same
    // for the same seed.
    QStringList places() const;
    // Gives each new directory a number: its name is another each time.
    void numberDirectories();
    QString numbered(const QString &place) const;
    QString uuid();
    QString anyUserPlace();
    void tell(const QString &what, const QString &place);
    StoreListing expected() const;
    QString faultAtRest();
    void leaveOutFoldersOnTheirWay(StoreListing &listing) const;
    QString faultInLists(const QString &when);

    Kind _kind;
    StoreBench _bench;
    QStringList _directories;
    // Items that have been reported as downloaded since they were first reported.
    std::set<QString> _seenDownloaded;
};

} // namespace cvtamber
