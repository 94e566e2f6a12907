// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandRunner.h"
#include "simulator/ProfileParser.h"
#include "simulator/SimulatedRadio.h"
#include "support/ManualRunLoop.h"
#include "support/RecordingLog.h"

namespace cvtamber {

// A console that keeps what it is given, and gives its input piece by piece from the run loop.
class RecordingConsole final : public Console
{
public:
    explicit RecordingConsole(RunLoop &runLoop)
        : _inputCall(runLoop)
    {}

    QByteArray output;
    QString messages; // one a line
    QList<float> progress;
    QByteArrayList input;
    bool inputEnds = true;
    QString inputError;
    bool terminal = false;
    bool outputBroken = false;

    // Someone types; an empty block ends the input.
    void type(const QByteArray &bytes)
    {
        if (bytes.isEmpty())
            inputEnds = true;
        else
            input.append(bytes);
        if (_handler && !_inputCall.isActive())
            giveInput();
    }

    bool writeOutput(const QByteArray &bytes) override
    {
        if (!outputBroken)
            output += bytes;
        return !outputBroken;
    }
    bool outputIsTerminal() const override { return terminal; }
    void writeMessage(const QString &line) override { messages += line + QLatin1Char('\n'); }
    void writeNote(const QString &) override {}
    void showProgress(float fraction) override { progress.append(fraction); }
    void endProgress() override {}
    void startInput(const InputHandler &handler) override
    {
        _handler = handler;
        giveInput();
    }
    void stopInput() override
    {
        _handler = nullptr;
        _inputCall.cancel();
    }

private:
    void giveInput()
    {
        if (input.isEmpty() && !inputEnds)
            return;
        _inputCall.start(std::chrono::milliseconds(1), [this] {
            const InputHandler handler = _handler;
            if (input.isEmpty()) {
                _handler = nullptr;
                handler({}, inputError);
                return;
            }
            handler(input.takeFirst(), {});
            if (_handler)
                giveInput();
        });
    }

    DelayedCall _inputCall;
    InputHandler _handler;
};

class UnusedIdleTimer final : public IdleTimer
{
public:
    void setEnabled(bool) override {}
};

// The verbs on simulated devices, on a run loop whose time is moved: one bench is one afternoon with the
// devices of a profile, run() is one call of the program.
class VerbBench
{
public:
    explicit VerbBench(const QByteArray &profileJson)
        : _radio(makeRadio(profileJson))
        , _manager(CVBluetoothManager::create(loop, log, _radio->makeCentral()))
        , _device({loop, log, _idleTimer, _manager, {}})
    {}

    ManualRunLoop loop;
    RecordingLog log;
    RecordingConsole console{loop};

    SimulatedRadio &radio() { return *_radio; }
    SimulatedDevice &simulated(qsizetype index = 0) { return *_radio->devices().at(index); }
    QByteArray storedText(const QByteArray &name)
    {
        return simulated().firmware().storage().find(name).value_or("(none)");
    }

    void start(const QStringList &arguments)
    {
        console.output.clear();
        console.messages.clear();
        console.progress.clear();
        _status.reset();
        const auto parsed = parseCommandLine(arguments);
        if (!parsed.value) {
            console.messages = parsed.error;
            _status = ExitStatus::WrongUsage;
            return;
        }
        _runner = std::make_unique<CommandRunner>(CommandServices{loop, console, _manager, &_device},
                                                  *parsed.value);
        _runner->start([this](ExitStatus status) { _status = status; });
    }
    CommandRunner &runner() { return *_runner; }
    // None while the command runs.
    std::optional<ExitStatus> status() const { return _status; }

    // -1 when the command has not ended within ten minutes or has left a link behind.
    int wait()
    {
        loop.advanceUntil([this] { return _status.has_value(); }, std::chrono::minutes(10));
        _runner.reset();
        for (const auto &device : _radio->devices()) {
            if (device->isLinked())
                return -1;
        }
        return _status ? static_cast<int>(*_status) : -1;
    }
    int run(const QStringList &arguments)
    {
        start(arguments);
        return wait();
    }

private:
    std::shared_ptr<SimulatedRadio> makeRadio(const QByteArray &profileJson)
    {
        const ProfileResult profile = parseProfile(profileJson);
        if (!profile.error.isEmpty())
            qFatal("%s", qPrintable(profile.error));
        return SimulatedRadio::fromProfile(loop, log, profile.profiles, QString());
    }

    UnusedIdleTimer _idleTimer;
    std::shared_ptr<SimulatedRadio> _radio;
    std::shared_ptr<CVBluetoothManager> _manager;
    CVBTDevice _device;
    std::unique_ptr<CommandRunner> _runner;
    std::optional<ExitStatus> _status;
};

} // namespace cvtamber
