// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVDeviceDelegates.h"
#include "device/IdleTimer.h"
#include "device/LinkObserver.h"
#include "support/RecordingLog.h"

#include <QStringList>

#include <algorithm>
#include <functional>
#include <utility>

namespace cvtamber {

// Receivers that keep what they were told, one line a call.

class FakeIdleTimer final : public IdleTimer
{
public:
    void setEnabled(bool value) override
    {
        enabled = value;
        ++calls;
    }

    bool enabled = false;
    int calls = 0;
};

// All delegates of the device object in one. `react` runs after each line, with the line.
class RecordingDelegates final : public CVDeviceStateDelegate,
                                 public CVDownloadFileDelegate,
                                 public CVUploadFileDelegate,
                                 public CVDataDelegate,
                                 public CVBTDeviceDelegate
{
public:
    void corvaneDeviceStateChanged(int state) override { add(QStringLiteral("state %1").arg(state)); }
    void cvDownloadProgress(float fraction) override { add(QStringLiteral("download %1").arg(fraction)); }
    void cvFileDownloaded(const QString &text) override { add(QStringLiteral("downloaded ") + text); }
    void cvFileDownloadOutcome(const FetchOutcome &o) override
    {
        add(QStringLiteral("outcome silence=%1 undefined=%2 received=%3 listed=%4")
                .arg(o.endedBySilence)
                .arg(o.undefinedBytes)
                .arg(o.receivedBytes)
                .arg(o.listedSize));
    }
    void cvFileDownloadFailed(const QString &) override { add(QStringLiteral("download failed")); }
    void cvUploadProgress(float fraction) override { add(QStringLiteral("upload %1").arg(fraction)); }
    void cvFileUploaded() override { add(QStringLiteral("uploaded")); }
    void cvUploadReplacedCharacters(qsizetype n) override { add(QStringLiteral("replaced %1").arg(n)); }
    void cvFileUploadFailed(const QString &) override { add(QStringLiteral("upload failed")); }
    void CV_newDataReceived(const QString &text) override { add(QStringLiteral("live ") + text); }
    void cvBtDeviceSerialRead(CVBTDevice &, const QString &serial) override
    {
        add(QStringLiteral("serial ") + serial);
    }

    QStringList take() { return std::exchange(events, {}); }

    QStringList events;
    std::function<void(const QString &)> react;

private:
    void add(const QString &line)
    {
        events.append(line);
        if (react)
            react(line);
    }
};

class RecordingObserver final : public LinkObserver
{
public:
    void linkConnected() override { add(QStringLiteral("connected")); }
    void linkLost(const QString &) override { add(QStringLiteral("lost")); }
    void linkClosed() override { add(QStringLiteral("closed")); }
    void linkStalled() override { add(QStringLiteral("stalled")); }
    void linkWritesConfirmed() override { add(QStringLiteral("confirmed")); }
    void linkWriteFailed(const QString &reason) override { add(QStringLiteral("write failed: ") + reason); }

    QStringList take() { return std::exchange(events, {}); }

    QStringList events;
    std::function<void(const QString &)> react;

private:
    void add(const QString &line)
    {
        events.append(line);
        if (react)
            react(line);
    }
};

} // namespace cvtamber
