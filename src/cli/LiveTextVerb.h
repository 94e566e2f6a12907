// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/LineSplitter.h"
#include "cli/Verb.h"
#include "text/DeviceTables.h"
#include "text/TextForDevice.h"

#include <deque>

namespace cvtamber {

// `chat` and `board`: lines of standard input go to the device, lines that come from it are printed.
//
//   mode command -> lines both ways -> end of input -> 2 seconds without a word from the device, 10 at most
//                -> mode command again -> confirmed -> finished
// The mode command toggles, so it is sent again whenever the verb ends on a live link. A line is sent when the
// one before has been confirmed, and kept until it has been itself. A lost link is made again: the mode command and
// the line that was not confirmed go out once more, so a line may come twice but none is lost. While away
// standard input is read on, up to a bound, because its end then ends the verb: with what was not sent told.
class LiveTextVerb : public Verb, public CVDataDelegate
{
public:
    void run(Session &session) override;
    void interrupted() override;
    void CV_newDataReceived(const QString &text) override;

protected:
    LiveTextVerb(const VerbContext &context, const VerbRequest &request, const QString &modeCommand);

    // The device's languages, as they were when the mode began: a device that is away tells none.
    struct Languages
    {
        int keyboard = DeviceLanguage::Unknown;
        int shown = DeviceLanguage::Unknown;
    };

    // What is sent for a line that was typed, and printed for one that came.
    virtual PlainText outgoing(const QString &line, const Languages &languages) const;
    virtual QString incoming(const QString &line, int language) const;

private:
    // Of what the device sends without a line end; a person never writes as much.
    static constexpr qsizetype LongestLine = 1'000'000;

    struct Line
    {
        qsizetype number;
        QString text;
    };

    void enterMode();
    void readInput();
    void takeInput(const QByteArray &bytes, const QString &error);
    void takeLine(const QByteArray &line);
    void sendNext();
    void lineConfirmed();
    void waitForLastWords();
    void leave();
    bool print(const QByteArray &line);
    void tryingAgain(std::chrono::seconds after);
    void lost();
    void back();
    // What is to be said when the verb ends while the device is away.
    QString lostSentence() const;

    const QString _modeCommand;
    Session *_session = nullptr;
    Languages _languages;
    LineSplitter _input;
    LineSplitter _received{LongestLine};
    qsizetype _lineNumber = 0;
    std::deque<Line> _lines; // the first is on its way while _isSending
    qsizetype _waitingCharacters = 0;
    bool _isSending = false;
    bool _isReading = false;
    bool _inputEnded = false;
    qsizetype _warnedLine = 0;
    bool _lossTold = true;
    ExitStatus _status = ExitStatus::Done;
    bool _inMode = false;
    DelayedCall _quiet;
    DelayedCall _longestQuiet;
};

} // namespace cvtamber
