// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/modelcheck/StoreBench.h"

namespace cvtamber {

// Random operations on a local store, and what must be true whenever everything has come to rest.
//
// Undisturbed: what is listed, what a store that is opened anew lists, the directory and a plain model are the
// same. Disturbed: disk calls fail, another program changes the directory, and operations come in the midst of
// others; then the store opened anew lists what the directory holds, and no text that is owed is lost.
class LocalRun
{
public:
    LocalRun(quint32 seed, bool isDisturbed);

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
    QString faultAtRest();

    bool _isDisturbed;
    StoreBench _bench;
    StoreListing _model;
};

} // namespace cvtamber
