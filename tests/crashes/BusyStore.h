// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "crashes/Journal.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "support/RunningStore.h"

#include <QRandomGenerator>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace cvtamber {

// Adds, saves, renames, moves and deletes what is in a store, by seed and several things at a time, until the
// process is killed. What works on one item, or on all of a user's, is alone in doing so: the journal then tells what
// each item must be.
class BusyStore
{
public:
    // Operations are numbered from the first one on; numbers are also versions, and never used again.
    BusyStore(RunningStore &store, Journal &journal, quint32 seed, int firstNumber);

    void start() { tick(); }

    // The whole text of a version of a document; its size depends on the version.
    static QString textOf(int document, int version);
    // What a user's record says.
    static QString nameOfUser(int number);
    // "document.version" of a whole text; of any other one what it begins with.
    static QString versionIn(const QString &text);

private:
    using User = std::shared_ptr<TamberUser>;
    using Container = std::shared_ptr<TamberFilesContainer>;
    using File = std::shared_ptr<TamberDocument>;
    using Folder = std::shared_ptr<TamberDataFolder>;

    // What is under way.
    struct Work
    {
        int number = 0;
        QStringList items;
        QStringList users;
        bool isAloneWithUsers = false;
        std::function<bool()> isDone;
        // Of what was added, whose directory nobody could name before.
        QString place = {};
        int ticks = 0;
    };

    void tick();
    void startSomething();
    void workOnAllOf(const User &user, bool isOneTooMany);
    void workOnFile(const User &user, const Container &container);
    void add(int number, const QStringList &items, const std::vector<User> &users,
             std::function<bool()> isDone);
    void addAlone(int number, const std::vector<User> &users, std::function<bool()> isDone);
    bool isFree(const QString &item) const;
    bool isOpenToWork(const User &user) const;
    bool isIdle(const User &user) const;

    User anyUser();
    Container anyContainer(const User &user);
    // One that nothing works on; null when the container has none.
    File anyFile(const Container &container);
    Folder anyFolder(const User &user);
    static Folder namelessFolder(const User &user);
    bool oneIn(int many) { return _random.bounded(many) == 0; }
    QString pathOf(const FileURL &url) const;

    void addUser();
    void renameUser(const User &user);
    void archive(const User &user);
    void deleteUser(const User &user);
    void addFolder(const User &user);
    void renameFolder(const User &user, const Folder &folder);
    void moveFolder(const User &user, const Folder &folder);
    void deleteFolder(const User &user, const Folder &folder);
    void addFile(const User &user, const Container &container);
    void saveFile(const User &user, const File &file);
    void renameFile(const User &user, const Container &container, const File &file);
    void moveFile(const User &user, const Container &container, const File &file);
    void deleteFile(const User &user, const Container &container, const File &file);

    RunningStore &_store;
    Journal &_journal;
    QRandomGenerator _random;
    int _lastNumber;
    std::vector<Work> _work;
};

} // namespace cvtamber
