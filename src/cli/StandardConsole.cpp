// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StandardConsole.h"

#include "base/VisibleText.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <poll.h>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// 0, or the error number.
int writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written >= 0) {
            bytes = bytes.sliced(written);
        } else if (errno == EAGAIN) {
            // A descriptor that another program has made non-blocking: wait for room instead of losing text.
            pollfd waiting{descriptor, POLLOUT, 0};
            ::poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace

StandardConsole::StandardConsole(const Descriptors &descriptors)
    : _descriptors(descriptors)
    , _outputIsTerminal(::isatty(descriptors.output) != 0)
    , _errorIsTerminal(::isatty(descriptors.error) != 0)
{}

StandardConsole::~StandardConsole()
{
    endProgress();
}

bool StandardConsole::writeOutput(const QByteArray &bytes)
{
    if (_outputFailed)
        return false;
    endProgress();
    const int error = writeAll(_descriptors.output, bytes);
    if (error == 0)
        return true;
    _outputFailed = true;
    writeMessage(
        u"Standard output cannot be written: %1."_s.arg(QString::fromLocal8Bit(std::strerror(error))));
    return false;
}

void StandardConsole::writeMessage(const QString &line)
{
    endProgress();
    const QByteArray bytes = visibleText(line).toUtf8() + '\n';
    writeAll(_descriptors.error, bytes);
}

void StandardConsole::writeNote(const QString &line)
{
    if (_errorIsTerminal)
        writeMessage(line);
}

QByteArray StandardConsole::progressLine(int percent)
{
    constexpr int Width = 20;
    const int filled = percent * Width / 100;
    return QByteArray::number(percent).rightJustified(3) + " % [" + QByteArray(filled, '#') +
           QByteArray(Width - filled, ' ') + ']';
}

void StandardConsole::showProgress(float fraction)
{
    if (!_errorIsTerminal)
        return;
    const int percent = static_cast<int>(std::lround(fraction * 100));
    if (percent == _shownPercent)
        return;
    _shownPercent = percent;
    const QByteArray bytes = QByteArray("\r") + progressLine(percent);
    writeAll(_descriptors.error, bytes);
}

void StandardConsole::endProgress()
{
    if (_shownPercent < 0)
        return;
    _shownPercent = -1;
    writeAll(_descriptors.error, QByteArrayLiteral("\n"));
}

void StandardConsole::startInput(const InputHandler &handler)
{
    _inputHandler = handler;
    _inputNotifier = std::make_unique<QSocketNotifier>(_descriptors.input, QSocketNotifier::Read);
    QObject::connect(_inputNotifier.get(), &QSocketNotifier::activated, _inputNotifier.get(),
                     [this] { readInput(); });
}

void StandardConsole::stopInput()
{
    _inputHandler = nullptr;
    if (!_inputNotifier)
        return;
    // It may be the notifier that is calling.
    _inputNotifier->setEnabled(false);
    _inputNotifier.release()->deleteLater();
}

void StandardConsole::readInput()
{
    std::array<char, 65536> buffer;
    const ssize_t count = ::read(_descriptors.input, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    QString error;
    if (count < 0)
        error = u"Standard input cannot be read: %1."_s.arg(QString::fromLocal8Bit(std::strerror(errno)));
    const InputHandler handler = _inputHandler;
    if (count <= 0)
        stopInput();
    if (handler)
        handler(count > 0 ? QByteArray(buffer.data(), count) : QByteArray(), error);
}

} // namespace cvtamber
