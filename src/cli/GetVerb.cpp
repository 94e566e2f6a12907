// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/GetVerb.h"

#include "base/DurableFile.h"
#include "base/VisibleText.h"

#include <QFileInfo>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// The same text with its line ends, and nothing else that a terminal obeys.
QString forTerminal(const QString &text)
{
    QStringList lines = text.split(u'\n');
    for (QString &line : lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        QStringList fields = line.split(u'\t');
        for (QString &field : fields)
            field = visibleText(field);
        line = fields.join(u'\t');
    }
    return lines.join(u'\n');
}

} // namespace

bool GetVerb::writesFile() const
{
    return !request().output.isNull() && request().output != "-"_L1;
}

void GetVerb::prepare()
{
    if (writesFile()) {
        const QFileInfo info(request().output);
        const QString shown = visibleText(request().output);
        if (info.isDir()) {
            fail(ExitStatus::Failed, u"%1 is a folder."_s.arg(shown));
            return;
        }
        if (!request().force && (info.exists() || info.isSymLink())) {
            fail(ExitStatus::Failed, u"%1 is there already. --force replaces it."_s.arg(shown));
            return;
        }
    }
    ready();
}

void GetVerb::run(Session &session)
{
    session.withListing([this, &session] {
        CVBTDevice &device = session.device();
        if (isListed(device))
            fetch(device);
    });
}

void GetVerb::fetch(CVBTDevice &device)
{
    device.setCvDownloadDelegate(std::static_pointer_cast<GetVerb>(shared_from_this()));
    device.getFile(request().operand, request().backTranslate ? BackTranslation : PlainTransfer);
}

void GetVerb::cvDownloadProgress(float fraction)
{
    if (!isOver())
        console().showProgress(shownProgress(fraction));
}

void GetVerb::cvFileDownloaded(const QString &text)
{
    if (isOver())
        return;
    console().endProgress();
    if (_outcome.endedBySilence && _outcome.receivedBytes == 0 && _outcome.listedSize != 0) {
        fail(ExitStatus::Failed, u"The device sent nothing."_s);
        return;
    }
    warn();
    finish(save(text) ? ExitStatus::Done : ExitStatus::Failed);
}

void GetVerb::warn()
{
    if (_outcome.endedBySilence)
        console().writeMessage(u"Warning: the device fell silent before it said that the file was complete. "
                               "Its end may be missing."_s);
    if (_outcome.undefinedBytes > 0)
        console().writeMessage(
            u"Warning: %1 bytes are no text in the device's language; U+FFFD stands in their place."_s.arg(
                _outcome.undefinedBytes));
    // Translation changes the length.
    if (!request().backTranslate && _outcome.listedSize >= 0 && _outcome.listedSize != _outcome.receivedBytes)
        console().writeMessage(u"Warning: the device listed %1 characters and sent %2."_s.arg(
            QString::number(_outcome.listedSize), QString::number(_outcome.receivedBytes)));
}

bool GetVerb::save(const QString &text)
{
    if (writesFile())
        return saveFile(text.toUtf8());
    return console().writeOutput((console().outputIsTerminal() ? forTerminal(text) : text).toUtf8());
}

bool GetVerb::saveFile(const QByteArray &bytes)
{
    const QString &path = request().output;
    const DurableFileResult result = request().force ? replaceFile(path, bytes) : writeNewFile(path, bytes);
    if (result.ok())
        return true;
    if (result.outcome == DurableFileResult::Outcome::AlreadyExists)
        console().writeMessage(u"%1 has appeared meanwhile and was left as it is. --force replaces it."_s.arg(
            visibleText(path)));
    else
        console().writeMessage(
            u"%1 cannot be written: %2."_s.arg(visibleText(path), visibleText(result.message)));
    return false;
}

} // namespace cvtamber
