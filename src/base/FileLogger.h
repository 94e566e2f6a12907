// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>

namespace cvtamber {

class Locations;
class SystemLog;

// The application log: messages collect in "application.log" in the documents folder, one UTF-8 line each,
// without a time or a prefix, over all runs. The file is never shortened.
//
// Where it cannot be opened or written, messages still reach the system log. Thread: main thread. log() is
// slow by design: each message is on the disk when it returns.
class FileLogger
{
public:
    // Both outlive the logger.
    FileLogger(Locations &locations, SystemLog &systemLog);
    FileLogger(const FileLogger &) = delete;
    FileLogger &operator=(const FileLogger &) = delete;

    // The logger of the program, in the standard place; always the same one, made on first use.
    static FileLogger &sharedInstance();

    // The message as it is to appear; the system log gets it as an "info" message as well.
    void log(const QString &message);

private:
    SystemLog &_systemLog;
    QFile _logFile;
};

} // namespace cvtamber
