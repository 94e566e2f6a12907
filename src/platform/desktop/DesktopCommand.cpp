// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/DesktopCommand.h"

#include <QStandardPaths>

#include <unistd.h>
#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

DesktopCommand::DesktopCommand(RunLoop &runLoop, Answer answer, QObject *parent)
    : QObject(parent)
    , _answer(std::move(answer))
    , _patience(runLoop)
{
    connect(&_process, &QProcess::finished, this, [this](int status, QProcess::ExitStatus how) {
        answerOnce(how == QProcess::NormalExit && status == 0);
        deleteLater();
    });
    connect(&_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        answerOnce(false);
        deleteLater();
    });
    _process.setStandardInputFile(QProcess::nullDevice());
    _process.setStandardOutputFile(QProcess::nullDevice());
    _process.setStandardErrorFile(QProcess::nullDevice());
    // An interrupt at the terminal is meant for this program alone.
    _process.setChildProcessModifier([] { ::setsid(); });
}

void DesktopCommand::start(RunLoop &runLoop, const QString &program, const QStringList &arguments,
                           Answer answer, QObject *parent)
{
    auto *const command = new DesktopCommand(runLoop, std::move(answer), parent);
    if (program.isEmpty()) {
        command->_patience.start({}, [command] {
            command->answerOnce(false);
            command->deleteLater();
        });
        return;
    }
    command->_patience.start(PatienceLimit, [command] { command->answerOnce(true); });
    // QProcess kills what it runs at the latest when it goes: that is the shell, and not what the shell has started.
    command->_process.start(u"/bin/sh"_s,
                            QStringList{u"-c"_s, u"\"$@\" & wait $!"_s, u"sh"_s, program} + arguments);
}

QString DesktopCommand::find(const QString &program)
{
    return QStandardPaths::findExecutable(program);
}

void DesktopCommand::answerOnce(bool hasWorked)
{
    _patience.cancel();
    if (const Answer answer = std::exchange(_answer, {}))
        answer(hasWorked);
}

} // namespace cvtamber
