// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/DeviceTurn.h"
#include "device/LinkObserver.h"

#include <QString>

#include <functional>
#include <optional>

namespace cvtamber {

struct AppContext;

// Characters of live text that a screen reader is given at once.
constexpr qsizetype mostSpoken = 1000;

// The device's mode for a screen with live text, which one command turns on and off ("BOARD", "CHAT").
//
//   out   -> busy  the screen appears, or the link is there again, and it is not yet this screen's turn with the device
//   busy  -> in    it is: the command is sent
//   busy, in -> away   the link ends, which ends the mode on the device too
//   out   -> away  the screen appears without a link
//   away  -> busy  connected and identified again
//   in    -> out   the screen disappears: the command is sent
//   busy, away -> out  the screen disappears: nothing is sent, the device is not in the mode
//
// Loss and return are told by the device screen. Notices tell of text that was on its way then or failed to be written,
// of a device that does not answer, and once an appearance of characters that the device lacks. Thread: main thread. Owner: the
// screen, which outlives it.
class LiveMode final : private LinkObserver
{
public:
    // After each change of isAway() or statusText(); the screen is seen then.
    using Changed = std::function<void()>;

    // The context outlives it.
    LiveMode(AppContext &context, const QString &command, const Changed &changed);
    ~LiveMode() override;

    // For viewDidAppear and viewDidDisappear.
    void appear();
    void disappear();
    // The screen is seen and text would reach nobody.
    bool isAway() const { return _step == Step::Away || _step == Step::Busy; }
    // Why text would reach nobody; empty while it would reach the device.
    QString statusText() const;
    // The device object's, with an eye on what becomes of it.
    void sendString(const QString &text);
    // The device obeys what stands between braces, in these modes too.
    static bool isObeyed(QStringView text) { return text.contains(u'{') || text.contains(u'}'); }
    // That such a text is not sent, and what to write instead.
    void tellObeyed() const;

private:
    enum class Step { Out, Busy, In, Away };

    void linkStateChanged(int state) override;
    void linkConnected() override;
    void linkLost(const QString &reason) override;
    void linkClosed() override { goAway(); }
    void linkStalled() override;
    void linkWritesConfirmed() override { _hasUnconfirmedText = false; }
    void linkWriteFailed(const QString &reason) override;

    void enter();
    void turnEnded(DeviceTurn::End end);
    void tellStatus();
    void goAway();

    AppContext &_context;
    const QString _command;
    const Changed _changed;
    Step _step = Step::Out;
    std::optional<QString> _toldStatus; // since it appeared
    bool _hasUnconfirmedText = false;
    bool _hasToldReplaced = false;
};

} // namespace cvtamber
