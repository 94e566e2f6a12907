// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/LineSplitter.h"
#include "cli/Verb.h"

namespace cvtamber {

// `chat` and `board`: lines of standard input go to the device, lines that come from it are printed.
//
//   mode command -> lines both ways -> end of input -> 2 seconds without a word from the device, 10 at most
//                -> mode command again -> confirmed -> finished
// The mode command toggles, so it is sent again whenever the verb ends on a live link.
class LiveTextVerb : public Verb, public CVDataDelegate
{
public:
    void run(Session &session) override;
    void interrupted() override;
    void CV_newDataReceived(const QString &text) override;

protected:
    LiveTextVerb(const VerbContext &context, const VerbRequest &request, const QString &modeCommand);

private:
    void takeInput(const QByteArray &bytes, const QString &error);
    void sendLine(const QByteArray &line);
    void inputEnded();
    void leave();
    bool print(const QByteArray &line);

    const QString _modeCommand;
    Session *_session = nullptr;
    LineSplitter _input;
    LineSplitter _received;
    qsizetype _lineNumber = 0;
    ExitStatus _status = ExitStatus::Done;
    bool _inMode = false;
    DelayedCall _quiet;
    DelayedCall _longestQuiet;
};

} // namespace cvtamber
