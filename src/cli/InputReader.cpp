// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/InputReader.h"

#include "base/VisibleText.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

InputReader::~InputReader()
{
    if (_finished)
        _console.stopInput();
}

void InputReader::read(const QString &operand, const Finished &finished)
{
    if (operand != "-"_L1) {
        finished(readFile(operand));
        return;
    }
    _bytes.clear();
    _finished = finished;
    _console.startInput([this](const QByteArray &bytes, const QString &error) { take(bytes, error); });
}

InputReader::Outcome InputReader::readFile(const QString &path)
{
    const QString shown = visibleText(path);
    const QFileInfo info(path);
    if (!info.exists())
        return {{}, ExitStatus::NoSuchFile, u"There is no file %1 here."_s.arg(shown)};
    if (info.isDir())
        return {{}, ExitStatus::Failed, u"%1 is a folder."_s.arg(shown)};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, ExitStatus::Failed, u"%1 cannot be read: %2."_s.arg(shown, file.errorString())};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {{}, ExitStatus::Failed, u"%1 cannot be read: %2."_s.arg(shown, file.errorString())};
    return {bytes, ExitStatus::Done, {}};
}

void InputReader::take(const QByteArray &bytes, const QString &error)
{
    if (!bytes.isEmpty()) {
        _bytes += bytes;
        return;
    }
    std::exchange(_finished,
                  nullptr)({_bytes, error.isEmpty() ? ExitStatus::Done : ExitStatus::Failed, error});
}

} // namespace cvtamber
