// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVFileData.h"
#include "device/DeviceContext.h"

#include <QList>
#include <QMap>

#include <functional>

namespace cvtamber {

class CommandEngine;
class CommandSender;
class DeviceIdentity;

// The device's files: the list, fetch, store, emboss and delete.
//
// The list is what the last listing said, with stored files appended and deleted ones removed without asking
// again.
//
// Modes of the device that a transfer switches are switched back: after it; before an asked-for end of the link
// (abandonTransfer()); and after a loss when the same device, known by its serial number, is identified again and its state
// record still shows them switched (restoreAfterLoss()). Nothing else is ever switched.
class DeviceFiles
{
public:
    struct Hooks
    {
        std::function<void()> identified; // as DeviceIdentity::Hooks
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
    // Another command takes the answer: the device is put back, and the fetch has failed.
    void fetchPushedAside();

    // Ends the transfer that is under way and sends what it owes the device. Tells whether it was an upload.
    bool abandonTransfer(bool isFetching);
    // As CVBTDevice::cancelUpload().
    bool cancelUpload();
    // All that was sent has reached the device.
    void allIsWritten() { _switched = {}; }
    // The state record of this link is known.
    void restoreAfterLoss();
    // The link is gone: no block waits any longer; what is still switched is remembered for the device.
    void drop();

private:
    // What our own transfers have switched on the device and not, for all that is known, switched back.
    struct SwitchedModes
    {
        bool embosserOff = false;
        bool advanced = false;
        bool backTranslation = false;
        bool forwardTranslation = false;
        bool operator==(const SwitchedModes &) const = default;
    };

    void turnOffEmbosser();
    void turnEmbosserOnAgain();
    void turnOnAdvancedMode();
    void toggleBackTranslation();
    void restoreAfterFetch();
    void sendText(const QString &text);
    void dataDownloadedInThread(QByteArray reply, bool endedBySilence);

    DeviceContext &_context;
    CommandEngine &_engine;
    CommandSender &_sender;
    DeviceIdentity &_identity;
    Hooks _hooks;
    SwitchedModes _switched;
    QMap<QString, SwitchedModes> _leftSwitched; // by serial number
    QList<CVFileData> _cvFiles;
    std::function<void()> _dirCommandHandler;
    qint64 _downloadFileSize = 0; // -1: the file is not in the list
    QString _storedName;          // of the store that was begun last; null after an emboss
};

} // namespace cvtamber
