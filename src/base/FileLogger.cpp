// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileLogger.h"

#include "base/FileSync.h"
#include "base/StandardLocations.h"
#include "base/StderrLog.h"

namespace cvtamber {

FileLogger::FileLogger(Locations &locations, SystemLog &systemLog)
    : _systemLog(systemLog)
    , _logFile(locations.documentsFolder() + QStringLiteral("/application.log"))
{
    if (!_logFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        _systemLog.error(QStringLiteral("The application log cannot be opened: ") + _logFile.errorString());
}

FileLogger &FileLogger::sharedInstance()
{
    static StandardLocations locations;
    static StderrLog systemLog;
    static FileLogger logger(locations, systemLog);
    return logger;
}

void FileLogger::log(const QString &message)
{
    _systemLog.info(message);
    if (!_logFile.isOpen())
        return;
    const QByteArray line = (message + u'\n').toUtf8();
    if (_logFile.write(line) != line.size() || !syncToDisk(_logFile.handle()))
        _systemLog.error(QStringLiteral("The application log cannot be written: ") + _logFile.errorString());
}

} // namespace cvtamber
