// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "cli/ExitStatus.h"

namespace cvtamber {

// Reads the whole of a local file, or of standard input for "-". The outcome comes once; for a file before
// read() returns. Destroying the reader stops it.
class InputReader
{
public:
    struct Outcome
    {
        QByteArray bytes;
        ExitStatus status = ExitStatus::Done;
        QString error; // a sentence; empty when all was read
    };
    using Finished = std::function<void(const Outcome &)>;

    explicit InputReader(Console &console)
        : _console(console)
    {}
    InputReader(const InputReader &) = delete;
    InputReader &operator=(const InputReader &) = delete;
    ~InputReader();

    void read(const QString &operand, const Finished &finished);

private:
    static Outcome readFile(const QString &path);
    void take(const QByteArray &bytes, const QString &error);

    Console &_console;
    QByteArray _bytes;
    Finished _finished;
};

} // namespace cvtamber
