// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/SignalWatcher.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace cvtamber {

namespace {

constexpr std::array Signals{SIGINT, SIGTERM, SIGHUP};

// What a signal handler may touch: both ends of the pipe are set before the first handler is.
std::array<int, 2> signalPipe{-1, -1};
volatile std::sig_atomic_t signalsSeen = 0;

extern "C" void forwardSignal(int signal)
{
    if (signalsSeen != 0)
        ::_exit(128 + signal);
    signalsSeen = 1;
    const auto byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

} // namespace

SignalWatcher::SignalWatcher(const std::function<void(int)> &handler)
    : _handler(handler)
{
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // signals then end the process as they do without a watcher
    _notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(), [this] {
        unsigned char signal = 0;
        if (::read(signalPipe[0], &signal, 1) == 1)
            _handler(signal);
    });
    for (const int signal : Signals) {
        struct sigaction before
        {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_IGN)
            continue;
        struct sigaction action
        {};
        action.sa_handler = forwardSignal;
        action.sa_flags = SA_RESTART;
        ::sigaction(signal, &action, nullptr);
    }
}

SignalWatcher::~SignalWatcher()
{
    for (const int signal : Signals) {
        struct sigaction now
        {};
        ::sigaction(signal, nullptr, &now);
        if (now.sa_handler == forwardSignal)
            std::signal(signal, SIG_DFL);
    }
    _notifier.reset();
    for (int &end : signalPipe) {
        if (end >= 0)
            ::close(std::exchange(end, -1));
    }
}

} // namespace cvtamber
