// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"

#include <QSocketNotifier>

#include <memory>

namespace cvtamber {

// The console of the program: three file descriptors, read and written without buffers of its own.
//
// Needs a QCoreApplication. SIGPIPE must be ignored, so that a reader that has gone is an error like others.
// Writing blocks while the other end does not read. Owner: main().
class StandardConsole final : public Console
{
public:
    struct Descriptors
    {
        int input = 0;
        int output = 1;
        int error = 2;
    };

    explicit StandardConsole(const Descriptors &descriptors);
    ~StandardConsole() override;

    bool writeOutput(const QByteArray &bytes) override;
    bool outputIsTerminal() const override { return _outputIsTerminal; }
    void writeMessage(const QString &line) override;
    void writeNote(const QString &line) override;
    void showProgress(float fraction) override;
    void endProgress() override;
    void startInput(const InputHandler &handler) override;
    void stopInput() override;

    // " 42 % [########            ]": the number first, where a short braille display has it in view.
    static QByteArray progressLine(int percent);

private:
    void readInput();

    const Descriptors _descriptors;
    const bool _outputIsTerminal;
    const bool _errorIsTerminal;
    bool _outputFailed = false;
    int _shownPercent = -1; // -1: no bar is on the screen
    InputHandler _inputHandler;
    std::unique_ptr<QSocketNotifier> _inputNotifier;
};

} // namespace cvtamber
