// SPDX-License-Identifier: GPL-3.0-or-later
#include "VirtualDesk.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

#include <array>
#include <cstring>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace cvtamber {

namespace {

// Places in the head of an X window dump, in words of four bytes, the most significant one first.
enum DumpWord {
    HeaderSize = 0,
    Width = 4,
    Height = 5,
    BitsPerPixel = 11,
    BytesPerLine = 12,
    Colors = 19,
    Words = 25
};
// Of one entry of the colour map behind the head.
constexpr qsizetype ColorSize = 12;

// The first line that a program writes to a descriptor of its own; empty when it ends without one.
QByteArray firstLine(int descriptor)
{
    QByteArray line;
    char letter = 0;
    while (::read(descriptor, &letter, 1) == 1 && letter != '\n')
        line.append(letter);
    return line;
}

// Starts a program that is given the number of a descriptor, and reads what it says there.
QByteArray startAndRead(std::unique_ptr<Child> &child, QByteArrayList command)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return {};
    for (QByteArray &word : command)
        word.replace('%', QByteArray::number(ends[1]));
    child = std::make_unique<Child>(command, ends[1]);
    ::close(ends[1]);
    QByteArray line = firstLine(ends[0]);
    ::close(ends[0]);
    return line;
}

} // namespace

Child::Child(const QByteArrayList &command, int kept)
{
    std::vector<char *> arguments;
    for (const QByteArray &word : command)
        arguments.push_back(const_cast<char *>(word.constData()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (kept >= 0) {
        // Onto itself: the descriptor then stays open in the program.
        posix_spawn_file_actions_adddup2(&actions, kept, kept);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    if (::posix_spawnp(&_pid, arguments.front(), &actions, nullptr, arguments.data(), environ) != 0)
        _pid = -1;
    posix_spawn_file_actions_destroy(&actions);
}

Child::~Child()
{
    if (!hasStarted())
        return;
    ::kill(_pid, SIGTERM);
    ::waitpid(_pid, nullptr, 0);
}

VirtualDesk::VirtualDesk(QSize screen)
{
    makeFolders();
    if (!startDisplay(screen))
        _problem = "Xvfb cannot be started";
    else if (!mapScreen())
        _problem = "the screen of Xvfb cannot be read";
    else if (!startBus())
        _problem = "dbus-daemon cannot be started";
}

VirtualDesk::~VirtualDesk()
{
    if (_file)
        ::munmap(_file, _fileSize);
}

void VirtualDesk::makeFolders() const
{
    const std::array names{"DATA_HOME", "CONFIG_HOME", "STATE_HOME", "CACHE_HOME", "RUNTIME_DIR"};
    for (const char *name : names) {
        const QByteArray folder = QByteArray(name).toLower().split('_').first();
        const QString path = _folder.filePath(QString::fromLatin1(folder));
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(QByteArray("XDG_").append(name).constData(), QFile::encodeName(path));
    }
    qputenv("HOME", QFile::encodeName(_folder.path()));
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_QUICK_BACKEND", "software");
}

bool VirtualDesk::startDisplay(QSize screen)
{
    const QByteArray size = QByteArray::number(screen.width()) + 'x' + QByteArray::number(screen.height());
    const QByteArray number = startAndRead(
        _server, {"setpriv", "--pdeathsig", "TERM", "Xvfb", "-displayfd", "%", "-screen", "0", size + "x24",
                  "-fbdir", QFile::encodeName(_folder.path()), "-nolisten", "tcp", "-noreset", "-nocursor"});
    qputenv("DISPLAY", ":" + number);
    return !number.isEmpty();
}

bool VirtualDesk::mapScreen()
{
    QFile file(_folder.filePath(QStringLiteral("Xvfb_screen0")));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    _fileSize = static_cast<size_t>(file.size());
    void *const place = ::mmap(nullptr, _fileSize, PROT_READ, MAP_SHARED, file.handle(), 0);
    if (place == MAP_FAILED)
        return false;
    _file = static_cast<uchar *>(place);
    if (_fileSize < Words * sizeof(quint32))
        return false;
    std::array<quint32, Words> head{};
    qFromBigEndian<quint32>(_file, Words, head.data());
    _size = QSize(static_cast<int>(head[Width]), static_cast<int>(head[Height]));
    _bytesPerLine = head[BytesPerLine];
    const qsizetype start = head[HeaderSize] + ColorSize * head[Colors];
    _pixels = _file + start;
    return head[BitsPerPixel] == 32 && start + _bytesPerLine * _size.height() <= file.size();
}

bool VirtualDesk::startBus()
{
    const QByteArray address =
        startAndRead(_bus, {"setpriv", "--pdeathsig", "TERM", "dbus-daemon", "--session", "--nofork",
                            "--nopidfile", "--print-address=%"});
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    return !address.isEmpty();
}

QImage VirtualDesk::picture(int lineStep) const
{
    QImage copy(_size.width(), _size.height() / lineStep, QImage::Format_RGB32);
    for (int line = 0; line < copy.height(); ++line)
        std::memcpy(copy.scanLine(line), _pixels + _bytesPerLine * lineStep * line,
                    static_cast<size_t>(copy.width()) * sizeof(QRgb));
    return copy;
}

} // namespace cvtamber
