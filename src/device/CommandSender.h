// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "device/BluetoothPeripheral.h"
#include "device/DeviceContext.h"
#include "device/SendQueue.h"

namespace cvtamber {

// Braces around commands, pieces of at most 20 bytes, one piece for each confirmation, and the upload's
// progress.
//
// What is sent while the queue is empty goes out at once, even when earlier writes are unconfirmed. The end
// of an upload is reported on the first confirmation that finds the queue empty; the last confirmation is
// told to the link observers.
class CommandSender
{
public:
    // Writes one piece; false when there is nothing to write to and the bytes are gone.
    using Writer = std::function<bool(const QByteArray &)>;

    CommandSender(DeviceContext &context, Writer writer);

    void setDoubleBraces(bool doubleBraces) { _doubleBraces = doubleBraces; }
    void sendCommand(const QString &command, int language);
    bool sendString(const QString &text, int language, qsizetype *replaced);
    // The text of a document: what has not left of it goes with abandonUpload().
    bool sendText(const QString &text, int language, qsizetype *replaced);
    bool sendData(const QByteArray &data);
    // One write past the queue; false when there was nothing to write to.
    bool internalSendData(const QByteArray &data);

    // A write is over. A failed one is told to the observers and feeds the queue like a confirmed one.
    void writeEnded(const BluetoothResult &error);
    void setWaitingForDataSent(bool waiting) { _waitingForDataSent = waiting; }

    qint64 uploadDataSize() const { return _uploadDataSize; }
    void setUploadDataSize(qint64 size);

    qsizetype queuedBytes() const { return _sendQueue.size(); }
    qsizetype unconfirmedWrites() const { return _unconfirmedWrites; }

    // Drops what has not left of a document's text; the commands that close and restore still leave. Tells whether
    // an upload was under way or unconfirmed, of which no end is reported any more.
    bool abandonUpload();
    // The link is gone: forgets everything, and tells whether an upload was under way or unconfirmed.
    bool drop();

private:
    bool encodeAndSend(const QString &text, int language, qsizetype *replaced, SendQueue::Kind kind);
    bool enqueueOrWrite(QByteArray bytes, qsizetype testedLength,
                        SendQueue::Kind kind = SendQueue::Kind::Commands);
    void uploadProgressOnThread();
    void uploadDoneOnThread();
    void watchForStall();

    DeviceContext &_context;
    Writer _writer;
    SendQueue _sendQueue;
    bool _doubleBraces = true;
    bool _waitingForDataSent = false;
    qint64 _uploadDataSize = 0;
    // From the start of an upload to the confirmation of its last write.
    bool _uploadUnconfirmed = false;
    qsizetype _unconfirmedWrites = 0;
    DelayedCall _stallTimer;
    bool _isStalled = false;
    quint64 _dropCount = 0;
};

} // namespace cvtamber
