// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "store/modelcheck/Random.h"
#include "support/FaultyFileOperations.h"
#include "support/StoreListing.h"
#include "support/StoreRig.h"

#include <set>

namespace cvtamber {

// A store on a rig of its own with what both kinds of run need: random choices from it, background work in
// random order, and the account of the texts that must not be lost.
class StoreBench
{
public:
    using User = std::shared_ptr<TamberUser>;
    using Container = std::shared_ptr<TamberFilesContainer>;

    StoreBench(quint32 seed, StoreRig::Place place);
    ~StoreBench();

    // The store anew, as after a start of the program.
    void open();
    // The program ends, with what the disk takes of its work, and starts while the disk is as it is.
    void startAnew();
    // Disk calls of a kind fail, from one of the next on, for up to so many.
    void failCalls(int most);
    void endFailures();
    // The root is not there, only the empty place of the mount; then it is back, unless something was written to that place.
    void unmount();
    void mount();
    bool isAway() const { return _isAway; }
    std::vector<std::shared_ptr<TamberUsers>> registries() const;
    std::vector<User> users() const;
    // Users and folders.
    std::vector<Container> containers() const;
    // Where it is, below the root.
    QString placeOf(const FileURL &url) const;
    // What the directory holds, read by other means than the store's, in the form of a listing.
    StoreListing directoryListing() const;

    // A few of the tasks that wait, in any order, or what is due on the loop.
    void someBackgroundWork();
    // All of it, in any order, and what saves itself later.
    void settleAll();
    // Nobody has asked for work here that is not done.
    bool isFree(const FileURL &url) const;
    // Not free until everything rests: an operation of several parts goes on there.
    void reserve(const QString &place) { _reserved.push_back(place); }
    bool isReserved(const QString &place) const;

    QString freshText();
    QString anyTitle();
    // Of the document or of its placeholder, which holds here what will be downloaded.
    QString textAt(const FileURL &url) const;

    // The account: a text is owed from the moment when it is known to be on the disk until somebody asks for
    // its end. Below a place that is being deleted nothing new is owed.
    void owe(const QString &text, const QString &place);
    void forgive(const QString &text) { _owed.erase(text); }
    // What is at the place or below it.
    void forgiveAll(const QString &place);
    // Those of the documents that the container lists.
    void forgiveListed(const TamberFilesContainer &container);
    void setDying(const QString &place) { _dying.push_back(place); }
    bool isDying(const QString &place) const;
    // Nothing is under way any more.
    void atRest();
    // The texts that are nowhere, neither in the store nor in the trash.
    QStringList lostTexts() const;

    Random random;
    FaultyFileOperations operations{FileOperations::system()};
    StoreRig rig;
    std::shared_ptr<TamberStorage> storage;
    QStringList story;

private:
    QString realPath(const QString &path) const;

    quint32 _seed;
    bool _isAway = false;
    int _texts = 0;
    std::set<QString> _owed;
    QStringList _dying;
    QStringList _reserved;
};

// True for the place itself too.
bool isBelow(const QString &place, const QString &other);

} // namespace cvtamber
