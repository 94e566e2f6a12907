// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace cvtamber {

// SIGINT, SIGTERM and SIGHUP as calls from the event loop. The first one is handed over; a second one ends
// the process at once. A signal that was ignored when the program started stays ignored.
//
// Needs a QCoreApplication. One at a time, owner: main().
class SignalWatcher
{
public:
    explicit SignalWatcher(const std::function<void(int signal)> &handler);
    SignalWatcher(const SignalWatcher &) = delete;
    SignalWatcher &operator=(const SignalWatcher &) = delete;
    ~SignalWatcher();

private:
    std::function<void(int)> _handler;
    std::unique_ptr<QSocketNotifier> _notifier;
};

} // namespace cvtamber
