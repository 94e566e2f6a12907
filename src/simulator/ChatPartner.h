// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "simulator/FirmwareModel.h"

#include <deque>
#include <functional>

namespace cvtamber {

// The person at the simulated device: reads what comes in chat, line by line, and on the whiteboard, word by word, and
// types what the profile's script says to it.
//
// One text after the other is typed, each `after` its predecessor. What is still to be typed is forgotten when the mode
// ends, and so is what would be more than MostToType texts behind. Owner: SimulatedDevice. Main thread.
class ChatPartner
{
public:
    using Type = std::function<void(const QByteArray &bytes)>;

    static constexpr size_t MostToType = 256;

    // `type` is called from the loop, in the device's own codes.
    ChatPartner(RunLoop &runLoop, const DeviceProfile &profile, Type type);
    ChatPartner(const ChatPartner &) = delete;
    ChatPartner &operator=(const ChatPartner &) = delete;
    ~ChatPartner() = default;

    void activityChanged(FirmwareModel::Activity activity);
    // False when the script says nothing of this mode, so that the firmware echoes it.
    bool hear(const QByteArray &bytes);

private:
    // A longer line or word is taken as it stands.
    static constexpr qsizetype MaximalLine = 4096;

    void hearLine(const QByteArray &line);
    void typeLater(const PartnerAnswer &answer);
    void typeNext();

    const int _language;
    const QList<PartnerAnswer> _chat;
    const QList<PartnerAnswer> _board;
    Type _type;
    // Of the mode that is on; null in any other.
    const QList<PartnerAnswer> *_script = nullptr;
    bool _isBoard = false;
    QByteArray _line;
    struct Typing
    {
        std::chrono::milliseconds after;
        QByteArray bytes;
    };
    std::deque<Typing> _toType;
    DelayedCall _next;
};

} // namespace cvtamber
