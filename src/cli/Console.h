// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace cvtamber {

// The three standard streams as the verbs see them: results, messages, input.
//
// Thread: main thread. Owner: start-up; outlives every verb.
class Console
{
public:
    // Bytes as they come. An empty block comes last and once: the end, or with a sentence why reading failed.
    using InputHandler = std::function<void(const QByteArray &bytes, const QString &error)>;

    Console() = default;
    Console(const Console &) = delete;
    Console &operator=(const Console &) = delete;
    virtual ~Console() = default;

    // Results, as they are. False when they could not be written; the reason has been told then.
    virtual bool writeOutput(const QByteArray &bytes) = 0;
    virtual bool outputIsTerminal() const = 0;

    // One message, a line of its own. What comes from a device or a person goes through visibleText() first.
    virtual void writeMessage(const QString &line) = 0;
    // A message for someone who sits and waits: shown on a terminal only.
    virtual void writeNote(const QString &line) = 0;
    // 0 to 1; shown on a terminal only, until a message comes or endProgress() is called.
    virtual void showProgress(float fraction) = 0;
    virtual void endProgress() = 0;

    // Reads standard input from the run loop until its end or stopInput(). The handler may stop the input.
    virtual void startInput(const InputHandler &handler) = 0;
    virtual void stopInput() = 0;
};

} // namespace cvtamber
