// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/modelcheck/StoreBench.h"

namespace cvtamber {

// Random operations on a local store, and what must be true whenever everything has come to rest.
//
// Undisturbed: what is listed, what a store that is opened anew lists, the directory and a plain model are the
// same. Failing: disk calls fail, from one on for some calls; the program starts anew in between; and users' directories are
// copied in, their records last. Then what is listed is on the disk, but for what was deleted. Disturbed: another program
// changes the directory as well, and operations come in the midst of others. In all of them the store opened anew lists what
// the directory holds, and no text that is owed is lost.
class LocalRun
{
public:
    enum class Kind { Undisturbed, Failing, Disturbed };

    LocalRun(quint32 seed, Kind kind);

    // What was wrong, or null.
    QString run();
    const QStringList &story() const { return _bench.story; }

private:
    using User = StoreBench::User;
    using Container = StoreBench::Container;
    using Folder = std::shared_ptr<TamberDataFolder>;
    using File = std::shared_ptr<TamberDocument>;

    void step();
    void addUser();
    void renameUser();
    void deleteUser();
    void moveUser();
    void addFolder();
    void renameFolder();
    void deleteFolder();
    void moveFolder();
    void addFile();
    void renameFile();
    void deleteFile();
    void moveFile();
    void editFile();
    void actFromOutside();
    void disturb();
    void copyUserIn();
    void finishCopies();
    void refreshAll();

    User anyUser();
    Folder anyFolder(const User &user);
    Container anyContainer();
    File anyFile(const Container &container);
    // In an undisturbed run nothing is begun where something is under way.
    bool mayTouch(const FileURL &url) const;
    bool isBusy(const FileURL &url) const { return _bench.rig.context.coordinator.isBusy(url); }
    void tell(const QString &what, const FileURL &url, const QString &more = {});
    // The model: a place and all below it goes, or goes elsewhere.
    void forgetPlace(const QString &place);
    void rebase(const QString &from, const QString &to);
    QString notOnDisk(const StoreListing &listed) const;
    QString faultAtRest();

    bool isDisturbed() const { return _kind == Kind::Disturbed; }

    Kind _kind;
    StoreBench _bench;
    // Directories that were copied in and have no record yet.
    QStringList _copies;
    int _copied = 0;
    StoreListing _model;
};

} // namespace cvtamber
