// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"

#include <QObject>
#include <QProcess>
#include <QStringList>

#include <functional>

namespace cvtamber {

// Runs a program of the desktop that hands something to another one.
//
// The answer comes once, from the loop: whether the program ended well, or still runs after PatienceLimit (some stay until what
// they opened is closed). What it has started is never killed. Thread: main thread. Owner: its parent; it deletes itself when the
// program has ended.
class DesktopCommand final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::seconds PatienceLimit{3};
    using Answer = std::function<void(bool hasWorked)>;

    // The program's whole path; an empty one answers false. The loop outlives it.
    static void start(RunLoop &runLoop, const QString &program, const QStringList &arguments, Answer answer,
                      QObject *parent);
    // Empty when there is none in the search path.
    static QString find(const QString &program);

private:
    DesktopCommand(RunLoop &runLoop, Answer answer, QObject *parent);
    void answerOnce(bool hasWorked);

    Answer _answer;
    QProcess _process;
    DelayedCall _patience;
};

} // namespace cvtamber
