// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AppBench.h"
#include "store/modelcheck/Random.h"
#include "support/FaultyFileOperations.h"

#include <set>

namespace cvtamber {

// A person who presses whatever is in front, by seed: rows, buttons, answers, tabs; while texts are handed over, the disk
// refuses calls, the store is switched between this computer and the cloud, and time goes on.
//
// After each step what a list shows is what the store has. In the end every text that was there or was told as saved, and
// that the person has not deleted, is in the store, in an Inbox or in the trash.
class ScreenWalk
{
public:
    explicit ScreenWalk(quint32 seed);
    ~ScreenWalk();

    // What was wrong, or null.
    QString run();
    const QStringList &story() const { return _story; }

private:
    // A row as it was shown when it was pressed.
    struct Pressed
    {
        // A document's, or the user's or folder's own directory.
        FileURL container;
        bool isUser = false;
        bool isFolder = false;
        QString title;
    };

    void step();
    void press();
    void resize();
    void answerAlert();
    void answerSheet();
    void pressTable(TableViewController &table);
    void remember(const TableViewController &table, IndexPath path);
    void typeNames(MEditUserDialog &dialog);
    void handOver();
    void failCalls();
    void switchStore();
    void settle();
    // The scripted cloud reports what lies in its folder.
    void reportCloud();
    void hearNotices();

    QString faultOfLists() const;
    QString faultOf(const TableViewController &table) const;
    QString lostText();
    QStringList texts() const;
    void forgive(const QString &path);
    void forgivePressed();
    void tell(const QString &what) { _story.append(what); }

    FaultyFileOperations _operations;
    AppBench _bench{_operations};
    Random _random;
    QStringList _story;
    std::set<QString> _owed;
    Pressed _pressed;
    QString _edited;
    int _texts = 0;
    qsizetype _heard = 0;
};

} // namespace cvtamber
