// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace cvtamber {

// A program that tells on its standard output when it is ready, and ends with this object.
class ReadyProgram
{
public:
    ~ReadyProgram() { stop(); }

    // Its standard error is shown as the test's own.
    void showErrors() { _process.setProcessChannelMode(QProcess::ForwardedErrorChannel); }
    // The first line that it prints; null when it ends or stays silent instead.
    QString start(const QString &program, const QStringList &arguments)
    {
        _process.start(program, arguments);
        while (!_process.canReadLine()) {
            if (!_process.waitForReadyRead(Patience))
                return {};
        }
        return QString::fromUtf8(_process.readLine()).trimmed();
    }
    bool isRunning()
    {
        // A test that waits for the end need not run the event loop.
        return !_process.waitForFinished(0) && _process.state() != QProcess::NotRunning;
    }
    // The exit status, -1 for a crash.
    int stop()
    {
        if (_process.state() != QProcess::NotRunning) {
            _process.terminate();
            if (!_process.waitForFinished(Patience))
                _process.kill();
            _process.waitForFinished(Patience);
        }
        return _process.exitStatus() == QProcess::NormalExit ? _process.exitCode() : -1;
    }

private:
    static constexpr int Patience = 20000; // ms

    QProcess _process;
};

// A bus of the test's own, in a folder of its own, that allows everything.
class PrivateBus
{
public:
    // The address; null when there is no dbus-daemon.
    QString start()
    {
        QFile configuration(_folder.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly))
            return {};
        configuration.write(
            "<busconfig><listen>unix:path=" + QFile::encodeName(_folder.filePath(QStringLiteral("bus"))) +
            "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/>"
            "<allow own=\"*\"/><allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
            "</policy></busconfig>");
        configuration.close();
        return _daemon.start(QStringLiteral("dbus-daemon"),
                             {QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                              QStringLiteral("--print-address"),
                              QStringLiteral("--config-file=") + configuration.fileName()});
    }
    void stop() { _daemon.stop(); }
    // For what belongs to the bus.
    QString filePath(const QString &name) const { return _folder.filePath(name); }

private:
    // A socket's path must be short, which the usual temporary folder may not be.
    QTemporaryDir _folder{QStringLiteral("/tmp/cvtamber-bus-XXXXXX")};
    ReadyProgram _daemon;
};

} // namespace cvtamber
