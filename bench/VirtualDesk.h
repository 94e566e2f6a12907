// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QImage>
#include <QSize>
#include <QString>
#include <QTemporaryDir>

#include <memory>

#include <sys/types.h>

namespace cvtamber {

// Another program with the environment of this one. It is asked to end, and waited for, by the destructor.
class Child
{
public:
    // `kept` is a descriptor that the program gets as well, to answer there; its complaints are then dropped. -1 for none.
    explicit Child(const QByteArrayList &command, int kept = -1);
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child();

    bool hasStarted() const { return _pid > 0; }
    pid_t pid() const { return _pid; }

private:
    pid_t _pid = -1;
};

// A place to run programs with a window: an X server whose screen is a file in memory, a session bus, and folders of
// its own. What programs draw is read from that file, so that being watched costs them nothing.
//
// The constructor puts all of it into the environment of this process: made before its first QGuiApplication.
class VirtualDesk
{
public:
    explicit VirtualDesk(QSize screen);
    VirtualDesk(const VirtualDesk &) = delete;
    VirtualDesk &operator=(const VirtualDesk &) = delete;
    ~VirtualDesk();

    // Null when all of it runs, else what is missing.
    const char *problem() const { return _problem; }
    // Where cvtamber keeps its documents on this desk.
    QString documents() const { return _folder.filePath(QStringLiteral("data/cvtamber/Documents")); }
    // The screen as it is now; with every n-th line of it alone.
    QImage picture(int lineStep = 1) const;

private:
    void makeFolders() const;
    bool startDisplay(QSize screen);
    bool mapScreen();
    bool startBus();

    QTemporaryDir _folder;
    const char *_problem = nullptr;
    std::unique_ptr<Child> _server;
    std::unique_ptr<Child> _bus;
    uchar *_file = nullptr;
    size_t _fileSize = 0;
    const uchar *_pixels = nullptr;
    QSize _size;
    qsizetype _bytesPerLine = 0;
};

} // namespace cvtamber
