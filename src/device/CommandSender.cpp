// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/CommandSender.h"

#include <QDateTime>

#include <utility>

namespace cvtamber {

namespace {

// The payload of one write on the link.
constexpr qsizetype pieceSize = 20;
// Without a confirmation for this long the link is told to be stalled; platforms themselves wait 25 seconds
// and more, too long for a person who waits for a transfer.
constexpr std::chrono::seconds stallTime{6};

// The command as the log may show it: names of files are a person's.
QString loggedCommand(const QString &command)
{
    if (command == QStringLiteral("FM END"))
        return command;
    for (const auto *word : {"PR ", "BEGIN ", "FM ", "DEL "}) {
        const QLatin1String prefix(word);
        if (command.startsWith(prefix))
            return QString(prefix) + SystemLog::masked(command.mid(prefix.size()));
    }
    return command;
}

} // namespace

CommandSender::CommandSender(DeviceContext &context, Writer writer)
    : _context(context)
    , _writer(std::move(writer))
    , _stallTimer(context.runLoop)
{}

void CommandSender::sendCommand(const QString &command, int language)
{
    _context.log.debug(
        QStringLiteral("- (void) sendCommand:(NSString*)\"%1\" (%2)")
            .arg(loggedCommand(command), QDateTime::currentDateTime().toString(Qt::ISODateWithMs)));
    const QString wrapped = _doubleBraces ? QString(QStringLiteral("{{") + command + QStringLiteral("}}"))
                                          : QString(QStringLiteral("{") + command + QStringLiteral("}"));
    sendString(wrapped, language, nullptr);
}

bool CommandSender::sendString(const QString &text, int language, qsizetype *replaced)
{
    return encodeAndSend(text, language, replaced, SendQueue::Kind::Commands);
}

bool CommandSender::sendText(const QString &text, int language, qsizetype *replaced)
{
    return encodeAndSend(text, language, replaced, SendQueue::Kind::Text);
}

bool CommandSender::encodeAndSend(const QString &text, int language, qsizetype *replaced,
                                  SendQueue::Kind kind)
{
    EncodedText encoded = TextCodec::encode(text, language);
    if (replaced)
        *replaced = encoded.replaced;
    // The characters are counted here, not the bytes: a pair of surrogates is two and leaves as one byte.
    return enqueueOrWrite(std::move(encoded.bytes), text.size(), kind);
}

bool CommandSender::sendData(const QByteArray &data)
{
    return enqueueOrWrite(data, data.size());
}

bool CommandSender::enqueueOrWrite(QByteArray bytes, qsizetype testedLength, SendQueue::Kind kind)
{
    if (!_sendQueue.isEmpty() || _waitingForDataSent) {
        _sendQueue.append(std::move(bytes), 0, kind);
        return true;
    }
    if (testedLength > pieceSize || bytes.size() > pieceSize) {
        // Without a link all of it goes nowhere: a rest that stayed would reach the next device.
        if (internalSendData(bytes.left(pieceSize)))
            _sendQueue.append(std::move(bytes), pieceSize, kind);
    } else {
        internalSendData(bytes);
    }
    return false;
}

bool CommandSender::internalSendData(const QByteArray &data)
{
    // A write of nothing would only make the device answer an empty packet.
    if (data.isEmpty() || !_writer(data))
        return false;
    ++_unconfirmedWrites;
    if (!_stallTimer.isActive() && !_isStalled)
        watchForStall();
    return true;
}

void CommandSender::writeEnded(const BluetoothResult &error)
{
    if (_unconfirmedWrites > 0)
        --_unconfirmedWrites;
    _stallTimer.cancel();
    _isStalled = false;
    const quint64 link = _dropCount;
    if (error)
        _context.observers.tell(&LinkObserver::linkWriteFailed, error->text);

    if (!_sendQueue.isEmpty()) {
        internalSendData(_sendQueue.take(pieceSize));
        uploadProgressOnThread();
    } else if (_context.uploadDelegate && _uploadDataSize >= 1) {
        uploadDoneOnThread();
    }
    // A delegate may have ended the link inside its call.
    if (link != _dropCount)
        return;
    if (_unconfirmedWrites > 0) {
        if (!_stallTimer.isActive())
            watchForStall();
    } else if (_sendQueue.isEmpty()) {
        _uploadUnconfirmed = false;
        _context.observers.tell(&LinkObserver::linkWritesConfirmed);
    }
}

void CommandSender::setUploadDataSize(qint64 size)
{
    _uploadDataSize = size;
    _uploadUnconfirmed = true;
}

void CommandSender::uploadProgressOnThread()
{
    const auto delegate = _context.uploadDelegate;
    if (delegate && _uploadDataSize >= 1)
        delegate->cvUploadProgress(1.0F - static_cast<float>(_sendQueue.size()) /
                                              static_cast<float>(_uploadDataSize));
}

void CommandSender::uploadDoneOnThread()
{
    // Cleared first: the delegate may start the next upload inside the call.
    _uploadDataSize = 0;
    const auto delegate = _context.uploadDelegate;
    delegate->cvFileUploaded();
    delegate->cvUploadProgress(1.0F);
}

void CommandSender::watchForStall()
{
    _stallTimer.start(stallTime, [this] {
        _isStalled = true;
        _context.observers.tell(&LinkObserver::linkStalled);
    });
}

bool CommandSender::abandonUpload()
{
    _sendQueue.dropText();
    _uploadDataSize = 0;
    return std::exchange(_uploadUnconfirmed, false);
}

bool CommandSender::drop()
{
    ++_dropCount;
    const bool uploadUnderWay = std::exchange(_uploadUnconfirmed, false);
    _sendQueue.clear();
    _uploadDataSize = 0;
    _unconfirmedWrites = 0;
    _waitingForDataSent = false;
    _isStalled = false;
    _stallTimer.cancel();
    return uploadUnderWay;
}

} // namespace cvtamber
