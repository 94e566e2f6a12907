// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/LinkObserver.h"

#include <QString>

#include <functional>

namespace cvtamber {

struct AppContext;

// Characters of live text that a screen reader is given at once.
constexpr qsizetype mostSpoken = 1000;

// The device's mode for a screen with live text, which one command turns on and off ("BOARD", "CHAT").
//
//   out   -> in    the screen appears and the link is up: the command is sent
//   in    -> away  the link ends, which ends the mode on the device too
//   out   -> away  the screen appears without a link
//   away  -> in    connected and identified again: the command is sent
//   in    -> out   the screen disappears: the command is sent
//   away  -> out   the screen disappears: nothing is sent, the device is not in the mode
//
// The loss itself is told by the device screen. Notices tell of text that was on its way then or failed to be written,
// of a device that does not answer, and once an appearance of characters that the device lacks. Thread: main thread. Owner: the
// screen, which outlives it.
class LiveMode final : private LinkObserver
{
public:
    // After each of the changes in and out of `away`; the screen is seen then.
    using Changed = std::function<void()>;

    // The context outlives it.
    LiveMode(AppContext &context, const QString &command, const Changed &changed);
    ~LiveMode() override;

    // For viewDidAppear and viewDidDisappear.
    void appear();
    void disappear();
    // The screen is seen and text would reach nobody.
    bool isAway() const { return _step == Step::Away; }
    // The device object's, with an eye on what becomes of it.
    void sendString(const QString &text);
    // The device obeys what stands between braces, in these modes too.
    static bool isObeyed(QStringView text) { return text.contains(u'{') || text.contains(u'}'); }
    // That such a text is not sent, and what to write instead.
    void tellObeyed() const;

private:
    enum class Step { Out, In, Away };

    void linkConnected() override;
    void linkLost(const QString &reason) override;
    void linkClosed() override { goAway(); }
    void linkStalled() override;
    void linkWritesConfirmed() override { _hasUnconfirmedText = false; }
    void linkWriteFailed(const QString &reason) override;

    void enter();
    void goAway();

    AppContext &_context;
    const QString _command;
    const Changed _changed;
    Step _step = Step::Out;
    bool _hasUnconfirmedText = false;
    bool _hasToldReplaced = false;
};

} // namespace cvtamber
