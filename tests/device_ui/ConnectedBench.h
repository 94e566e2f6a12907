// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DeviceScreenBench.h"

namespace cvtamber {

// A device screen's surroundings with a device that is connected, identified and has told its files. It prints in
// Polish, whose code page lacks some bytes, or in another language.
struct ConnectedBench : DeviceScreenBench
{
    static constexpr int Polish = 17;

    explicit ConnectedBench(const QList<SimulatedFile> &files, bool isTablet = true, int language = Polish)
        : DeviceScreenBench(isTablet, {profileWith(files, language)})
    {
        connectDevice();
    }
    ~ConnectedBench()
    {
        device.setCvUploadDelegate(nullptr);
        device.setCvDownloadDelegate(nullptr);
        device.setDataDelegate(nullptr);
    }

    // Or waits for it to come back by itself.
    void connectDevice()
    {
        if (!reconnector.isAway())
            device.connectAsCVCommWithPeripheral(findDevice());
        if (!advanceUntil([&] { return device.turn().isLinked(); }))
            qFatal("The simulated device could not be connected");
        advance(std::chrono::seconds(1));
    }
    void dropLink(bool withError = true)
    {
        simulated().dropLink(withError);
        advance(std::chrono::seconds(1));
    }
    QList<QByteArray> received() const { return simulated().firmware().receivedCommands(); }

private:
    static DeviceProfile profileWith(const QList<SimulatedFile> &files, int language)
    {
        DeviceProfile profile;
        // Of the switch's seventh value Polish is in one set of languages, Chinese in another.
        profile.firmware = language == Polish ? "2.1B004" : "2.1E004";
        profile.languageSwitch = language < 4 ? language - 1 : 7;
        profile.files = files;
        if (language != Polish)
            profile.language = language;
        return profile;
    }
};

} // namespace cvtamber
