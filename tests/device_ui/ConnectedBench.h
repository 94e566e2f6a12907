// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DeviceScreenBench.h"

namespace cvtamber {

// A device screen's surroundings with a device that is connected, identified and has told its files. It prints in
// Polish, whose code page lacks some bytes.
struct ConnectedBench : DeviceScreenBench
{
    explicit ConnectedBench(const QList<SimulatedFile> &files, bool isTablet = true)
        : DeviceScreenBench(isTablet, {profileWith(files)})
    {
        const auto states = std::make_shared<RecordingDelegates>();
        device.setCvStateDelegate(states);
        device.connectAsCVCommWithPeripheral(findDevice());
        if (!advanceUntil([&] { return states->events.contains(u"state 1"); }))
            qFatal("The simulated device could not be connected");
        device.setCvStateDelegate(nullptr);
        advance(std::chrono::seconds(1));
    }
    ~ConnectedBench()
    {
        device.setCvUploadDelegate(nullptr);
        device.setCvDownloadDelegate(nullptr);
    }

    void dropLink(bool withError = true)
    {
        simulated().dropLink(withError);
        advance(std::chrono::seconds(1));
    }
    QList<QByteArray> received() const { return simulated().firmware().receivedCommands(); }

private:
    static DeviceProfile profileWith(const QList<SimulatedFile> &files)
    {
        DeviceProfile profile;
        profile.firmware = "2.1B004";
        profile.languageSwitch = 7;
        profile.files = files;
        return profile;
    }
};

} // namespace cvtamber
