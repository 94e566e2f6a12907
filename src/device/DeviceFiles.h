// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVFileData.h"
#include "device/DeviceContext.h"

#include <QList>

#include <functional>

namespace cvtamber {

class CommandEngine;
class CommandSender;
class DeviceIdentity;

// The device's files: the list, fetch, store, emboss and delete.
//
// The list is what the last listing said, with stored files appended and deleted ones removed without asking
// again. Modes of the device that a transfer toggles are toggled back after it; an end of the link forgets
// that.
class DeviceFiles
{
public:
    struct Hooks
    {
        std::function<bool()> linkIsUp; // as DeviceIdentity::Hooks
        std::function<bool()> hasPeripheral;
    };

    DeviceFiles(DeviceContext &context, CommandEngine &engine, CommandSender &sender,
                DeviceIdentity &identity, Hooks hooks);

    void refreshFilesWithCompletionHandler(const std::function<void()> &handler);
    const QList<CVFileData> &files() const { return _cvFiles; }
    void setFiles(const QList<CVFileData> &files) { _cvFiles = files; }
    qint64 getSizeOfFileWithName(const QString &name) const;
    bool fileExists(const QString &name) const;
    void getFile(const QString &name, int useTranslation);
    void sendFileWithName(const QString &name, const QString &text, int useTranslation);
    void embossString(const QString &text, int useTranslation);
    void deleteFile(const QString &name);

    void handle_cmdDIR_result(const QByteArray &reply);
    void handle_cmdPR_result(QByteArray reply, bool endedBySilence);
    void downloadProgressOnThread(qsizetype receivedBytes);

    // The link is gone: no block waits any longer and nothing is toggled back.
    void drop();

private:
    void turnOnAdvancedMode();
    void sendText(const QString &text);
    void dataDownloadedInThread(QByteArray reply, bool endedBySilence);

    DeviceContext &_context;
    CommandEngine &_engine;
    CommandSender &_sender;
    DeviceIdentity &_identity;
    Hooks _hooks;
    QList<CVFileData> _cvFiles;
    std::function<void()> _dirCommandHandler;
    qint64 _downloadFileSize = 0; // -1: the file is not in the list
};

} // namespace cvtamber
