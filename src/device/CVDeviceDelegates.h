// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QString>

namespace cvtamber {

class CVBTDevice;

// Who the device object reports to. One delegate of each kind at a time, held strongly; a screen sets itself
// when it comes into use. Every call comes on the main thread. A delegate may replace itself or disconnect
// inside a call.

class CVDeviceStateDelegate
{
public:
    enum State : int {
        ConnectFailedOrLost = 0,
        ConnectedAndIdentified = 1,
        DisconnectedOrNotConnectable = 2, // on request, or the platform could not connect
    };

    CVDeviceStateDelegate() = default;
    CVDeviceStateDelegate(const CVDeviceStateDelegate &) = delete;
    CVDeviceStateDelegate &operator=(const CVDeviceStateDelegate &) = delete;
    virtual ~CVDeviceStateDelegate() = default;

    virtual void corvaneDeviceStateChanged(int state) = 0;
};

// How a fetch ended, beside its text.
struct FetchOutcome
{
    bool endedBySilence = false;  // no trailer came: the text may lack its end
    qsizetype undefinedBytes = 0; // bytes that the code page does not define, U+FFFD in the text
    qsizetype receivedBytes = 0;  // without the trailer
    qint64 listedSize = -1;       // size in the listing; -1 when the file was not listed
};

class CVDownloadFileDelegate : public InterfaceBase
{
public:
    // Received bytes by listed size, as they are: above 1 when more comes than was listed, negative when the
    // file is not listed, infinite for a listed size of 0. Show it through shownProgress().
    virtual void cvDownloadProgress(float fraction) = 0;
    // Once for each fetch that ended on a live link; a null text never comes.
    virtual void cvFileDownloaded(const QString &text) = 0;
    // Just before cvFileDownloaded.
    virtual void cvFileDownloadOutcome(const FetchOutcome &) {}
    // Instead of cvFileDownloaded when the link ended first; what had come is dropped.
    virtual void cvFileDownloadFailed(const QString & /*reason*/) {}
};

class CVUploadFileDelegate : public InterfaceBase
{
public:
    virtual void cvUploadProgress(float fraction) = 0;
    // The send queue is empty. Writes may still be unconfirmed: the file is safe on the device when
    // LinkObserver::linkWritesConfirmed comes.
    virtual void cvFileUploaded() = 0;
    // Characters that the device's code page lacks, each sent as "?" or as a letter without its mark. Before any
    // progress; not called for none.
    virtual void cvUploadReplacedCharacters(qsizetype /*count*/) {}
    // The link ended before the last write was confirmed, be it before or after cvFileUploaded: the file on the
    // device may be incomplete.
    virtual void cvFileUploadFailed(const QString & /*reason*/) {}
};

class CVDataDelegate : public InterfaceBase
{
public:
    // Live text: what comes while no command is pending. Bytes the code page lacks are U+FFFD.
    virtual void CV_newDataReceived(const QString &text) = 0;
};

class CVBTDeviceDelegate : public InterfaceBase
{
public:
    virtual void cvBtDeviceSerialRead(CVBTDevice &device, const QString &serial) = 0;
};

// A fraction as a progress bar may show it: 0 to 1, and 0 for what is not a number.
float shownProgress(float fraction);

} // namespace cvtamber
