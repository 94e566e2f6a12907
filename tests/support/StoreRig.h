// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileOperations.h"
#include "base/NotificationCenter.h"
#include "platform/documents/DiskFileCoordinator.h"
#include "store/StoreContext.h"
#include "store/StoreDisk.h"
#include "store/StoreProblems.h"
#include "support/FolderTrash.h"
#include "support/ManualRunLoop.h"
#include "support/ManualTaskRunner.h"
#include "support/RecordingLog.h"
#include "support/ScriptedCloud.h"

#include <QTemporaryDir>

namespace cvtamber {

class RecordingProblems final : public StoreProblemObserver
{
public:
    void storeProblem(const StoreProblem &problem) override { problems.append(problem); }
    // How many of one kind.
    qsizetype count(StoreProblem::What what) const
    {
        return std::count_if(problems.begin(), problems.end(),
                             [what](const StoreProblem &problem) { return problem.what == what; });
    }

    QList<StoreProblem> problems;
};

// What the store is given, over a real folder that goes with this object: time and background work move only
// when the test says so.
//
// Two roots stand ready, one in the cloud container and one beside it. Paths that the calls below take are
// relative to root().
class StoreRig
{
public:
    enum class Place { Local, Cloud };

    explicit StoreRig(Place place = Place::Local, FileOperations &operations = FileOperations::system(),
                      const QString &parentFolder = QDir::tempPath());
    ~StoreRig();

    // Runs tasks and what is due on the loop until nothing of it is left. Time does not move.
    void settle();

    const FileURL &root() const { return _root; }
    const FileURL &localRoot() const { return _localRoot; }
    const FileURL &cloudRoot() const { return _cloudRoot; }
    // Where all of it lies, both roots and the trash.
    QString folder() const { return _folder.path(); }
    QString path(const QString &relative = {}) const;
    FileURL file(const QString &relative) const { return FileURL::file(path(relative)); }
    FileURL directory(const QString &relative) const { return FileURL::directory(path(relative)); }

    // As another program does it, without the store's layers.
    void put(const QString &relative, const QByteArray &bytes) const; // makes the folders too
    void makeFolder(const QString &relative) const;
    void erase(const QString &relative) const; // a folder with all that is in it
    void age(const QString &relative) const;   // with all that is in it: touched more than an hour ago
    QByteArray bytes(const QString &relative) const;
    bool has(const QString &relative) const;
    // Sorted, hidden names too.
    QStringList names(const QString &relative = {}) const;

private:
    QTemporaryDir _folder;
    FileURL _localRoot;
    FileURL _cloudRoot;
    FileURL _root;

public:
    // In the order in which they need each other.
    ManualRunLoop loop;
    ManualTaskRunner tasks{loop};
    RecordingLog log;
    NotificationCenter notifications;
    std::shared_ptr<RecordingProblems> told = std::make_shared<RecordingProblems>();
    StoreProblems problems;
    StoreDisk disk;
    FolderTrash trash;
    ScriptedCloud cloud;
    DiskFileCoordinator coordinator{tasks, disk, trash};
    StoreContext context;
};

} // namespace cvtamber
