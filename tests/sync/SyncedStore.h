// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreProblems.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "support/RunningStore.h"

#include <QJsonObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace cvtamber {

// Does what a person would do on a store in a cloud folder, one command after the other, and answers each. Several may be under
// way. What is named is named by its path below the store, as the listing tells it; a text is told by its SHA-1.
//
//   list                         "list": path to text, or to the name of a user or folder
//   rest                         once nothing is under way; "unsaved": what is still tried again
//   add user, rename user        "name"; move user: to the other registry
//   add folder, rename folder    "name"; move folder: "to" another user
//   add                          "title", "text"; "free": under the first title like it that is free. Answers "at"
//   save                         opens, tells what it "saw", and for each of "texts" waits "hold" ms, sets it and saves it;
//                                closes. Answers how many were "saved". "closing": the closing saves
//   rename, move                 "title"; "to"
//   delete, delete folder, delete user    answers what was "listed" there
// "ok" is false for what is not listed, or could not be saved. Beside the answers it tells "problem" and, for each document
// that the store takes from the disk for good, "removed" and its text.
// Thread: main thread. Owner: main().
class SyncedStore final : public TamberUsersDelegate,
                          public StoreProblemObserver,
                          public std::enable_shared_from_this<SyncedStore>
{
public:
    using Tell = std::function<void(const QJsonObject &line)>;

    SyncedStore(RunningStore &store, Tell tell);
    ~SyncedStore() override;

    // False when the cloud folder is not there.
    bool open();
    void carryOut(const QJsonObject &command);

    void userAdded(const User &) override {}
    void userWillDelete(const User &) override {}
    void dataChangedForUser(const User &user) override;
    void contentGathered() override {}
    void storeProblem(const StoreProblem &problem) override;

    static QString hashOf(const QByteArray &text);

private:
    using Folder = std::shared_ptr<TamberDataFolder>;
    using Container = std::shared_ptr<TamberFilesContainer>;
    using File = std::shared_ptr<TamberDocument>;
    struct Edit;

    // What a path leads to; each is null where the path does not go so far.
    struct Place
    {
        User user;
        Folder folder;
        Container container;
        File file;
    };
    Place find(const QString &path) const;
    QStringList listedIn(const Container &container) const;
    QString pathOf(const FileURL &url) const;

    void answer(const QJsonObject &command, bool ok, QJsonObject details = {});
    // Once what was asked for has come to its end.
    void answerAtRest(const QJsonObject &command, const QJsonObject &details = {});

    void list(const QJsonObject &command);
    void rest(const QJsonObject &command);
    bool workOnUser(const QString &what, const QJsonObject &command);
    bool workOnFolder(const QString &what, const QJsonObject &command);
    bool workOnFile(const QString &what, const QJsonObject &command);
    void addFile(const QJsonObject &command, const Container &container);
    void save(const QJsonObject &command, const File &file);
    void saveNext(const std::shared_ptr<Edit> &edit);
    void finish(const std::shared_ptr<Edit> &edit, bool ok);

    RunningStore &_store;
    Tell _tell;
};

} // namespace cvtamber
