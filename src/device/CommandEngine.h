// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "base/InterfaceBase.h"
#include "device/DeviceContext.h"
#include "device/DeviceTurn.h"

#include <QByteArray>

#include <chrono>

namespace cvtamber {

class CommandSender;

// Who gets the complete reply of each command. A false flag means that no reply came.
class ReplyHandlers : public InterfaceBase
{
public:
    virtual void handle_cmdPC_result(bool success, int linkCode) = 0;
    virtual void handle_cmdVER_result(bool success, const QByteArray &reply) = 0;
    virtual void handle_cmdVER1_result(bool success, const QByteArray &reply) = 0;
    // False also when the reply is no state record.
    virtual void handle_cmdPCR_result(bool success) = 0;
    virtual bool analyzePCRData(const QString &reply) = 0;
    virtual void handle_cmdDIR_result(const QByteArray &reply) = 0;
    virtual void handle_cmdPR_result(QByteArray reply, bool endedBySilence) = 0;
    // Takes what it has served off the front of the buffer.
    virtual void handle_cmdFLASH_result(QByteArray &buffer) = 0;
    // The command awaits nothing any more: answered, not answered, or pushed aside by the next one, which has not been
    // sent yet. Not told when the link ends.
    virtual void commandEnded(int command, DeviceTurn::End end) = 0;
    // A piece was added to the reply under way.
    virtual void downloadProgressOnThread(qsizetype receivedBytes) = 0;
};

// The pending-command slot: collects what arrives until the line has been silent for the command's time, then
// hands it to the command's handler.
//
//   no command pending -> waiting (timer runs; every piece starts it again) -> dispatched -> no command
//   pending
//
// A fetch also ends at once when its last five bytes are the trailer. Number 8 (sound) has no timer and stays
// pending until the next waited command. A handler may start the next wait: the slot is free before it runs.
class CommandEngine
{
public:
    enum Command : int {
        NoCommand = 0,
        LinkCommand = 1,
        VersionCommand = 2,
        ExtendedVersionCommand = 3,
        StateCommand = 4,
        DirectoryCommand = 5,
        FreeSpaceCommand = 6,
        FetchCommand = 7,
        SoundCommand = 8,
    };

    CommandEngine(DeviceContext &context, CommandSender &sender, ReplyHandlers &handlers,
                  std::function<int()> keyboardLanguage);

    void sendCommand(const QString &command);
    // Numbers 1 to 6; any other does nothing.
    void sendWaitCommand(int number);
    // Number 7; any other does nothing.
    void sendWaitCommand(int number, const QString &parameters);
    void sendFinalWaitCommand(const QString &command);
    // Nobody waits for the pending command's answer any more; what has come of it becomes part of the next one.
    void pushAside();
    // Every piece from now on goes to the sound handler.
    void awaitSoundRequests();

    void handleCommandData(const QByteArray &data);
    void startCommanndTimer();
    void stopCommandTimer();

    int pendingCommand() const { return _pendingCommand; }
    // Forgets the pending command, its timer and its bytes.
    void drop();

private:
    void commandTimerElapsed();
    void dispatch(int command, QByteArray reply);
    bool endsWithTrailer() const;

    DeviceContext &_context;
    CommandSender &_sender;
    ReplyHandlers &_handlers;
    std::function<int()> _keyboardLanguage;
    int _pendingCommand = NoCommand;
    std::chrono::milliseconds _commandTimeout;
    QByteArray _receiveBuffer;
    DelayedCall _timer;
};

} // namespace cvtamber
