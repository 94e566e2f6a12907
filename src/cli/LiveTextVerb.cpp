// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LiveTextVerb.h"

#include "base/VisibleText.h"
#include "cli/DeviceSentences.h"
#include "cli/Utf8Text.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto QuietAfterInput = 2s;
constexpr auto LongestAfterInput = 10s;
// Of input that waits for the device; a person never types as much ahead.
constexpr qsizetype MostWaiting = 65536;

} // namespace

LiveTextVerb::LiveTextVerb(const VerbContext &context, const VerbRequest &request, const QString &modeCommand)
    : Verb(context, request)
    , _modeCommand(modeCommand)
    , _quiet(context.runLoop)
    , _longestQuiet(context.runLoop)
{}

PlainText LiveTextVerb::outgoing(const QString &line, const Languages &) const
{
    return {line, 0, {}};
}

QString LiveTextVerb::incoming(const QString &line, int) const
{
    return line;
}

void LiveTextVerb::run(Session &session)
{
    _session = &session;
    session.device().setDataDelegate(std::static_pointer_cast<LiveTextVerb>(shared_from_this()));
    session.keepLink(context().manager,
                     {[this](const QString &) { lost(); },
                      [this](std::chrono::seconds after) { tryingAgain(after); }, [this] { back(); }});
    enterMode();
    console().writeNote(u"Connected. Each line goes to the device. Ctrl-D ends."_s);
    readInput();
}

void LiveTextVerb::enterMode()
{
    _session->device().sendCommand(_modeCommand);
    _languages = {_session->device().cvKeyboardLanguage(), _session->device().cvLanguage()};
    _inMode = true;
}

// Reads while there is room for what is read.
void LiveTextVerb::readInput()
{
    const bool hasRoom = !_inputEnded && _waitingCharacters < MostWaiting;
    if (hasRoom == _isReading)
        return;
    _isReading = hasRoom;
    if (hasRoom)
        console().startInput(
            [this](const QByteArray &bytes, const QString &error) { takeInput(bytes, error); });
    else
        console().stopInput();
}

void LiveTextVerb::takeInput(const QByteArray &bytes, const QString &error)
{
    if (isOver())
        return;
    if (!error.isEmpty()) {
        console().writeMessage(error);
        _status = ExitStatus::Failed;
    }
    const QByteArrayList lines = _input.feed(bytes);
    for (const QByteArray &line : lines)
        takeLine(line);
    if (bytes.isEmpty()) {
        _inputEnded = true;
        _isReading = false;
        if (_input.hasRest())
            takeLine(_input.takeRest());
    }
    if (_inputEnded && _session->isAway()) {
        fail(ExitStatus::LinkFailed, lostSentence());
        return;
    }
    sendNext();
    readInput();
}

void LiveTextVerb::takeLine(const QByteArray &line)
{
    ++_lineNumber;
    const auto refuse = [this](const QString &why) {
        console().writeMessage(u"Line %1 was not sent: %2."_s.arg(QString::number(_lineNumber), why));
        _status = ExitStatus::Failed;
    };
    if (const auto offset = badUtf8Offset(line)) {
        refuse(u"its byte at offset %1 is no UTF-8"_s.arg(*offset));
        return;
    }
    const PlainText plain = outgoing(readUtf8(line).text, _languages);
    if (plain.text.contains(u'{')) {
        refuse(u"the device may take its opening brace for a command"_s);
        return;
    }
    if (plain.lost > 0)
        console().writeMessage(
            u"Line %1: %2"_s.arg(QString::number(_lineNumber), lostCharactersSentence(plain)));
    _lines.push_back({_lineNumber, plain.text});
    _waitingCharacters += plain.text.size();
}

void LiveTextVerb::sendNext()
{
    // The session knows of a loss a turn of the loop before it is told here.
    if (isOver() || !_inMode || _isSending || _session->isAway())
        return;
    if (_lines.empty()) {
        if (_inputEnded)
            waitForLastWords();
        return;
    }
    _isSending = true;
    const Line &line = _lines.front();
    qsizetype replaced = 0;
    _session->device().sendString(line.text + "\r\n"_L1, &replaced);
    // Told once, also when the line goes out a second time.
    if (replaced > 0 && std::exchange(_warnedLine, line.number) != line.number)
        console().writeMessage(
            u"Line %1: characters that the device does not have became \"?\" or lost an accent: %2."_s.arg(
                QString::number(line.number), QString::number(replaced)));
    _session->whenWritten([this] { lineConfirmed(); });
}

void LiveTextVerb::lineConfirmed()
{
    _isSending = false;
    _waitingCharacters -= _lines.front().text.size();
    _lines.pop_front();
    sendNext();
    readInput();
}

// What was sent last can be answered only once it has arrived.
void LiveTextVerb::waitForLastWords()
{
    if (_quiet.isActive())
        return;
    _quiet.start(QuietAfterInput, [this] { leave(); });
    _longestQuiet.start(LongestAfterInput, [this] { leave(); });
}

void LiveTextVerb::lost()
{
    if (isOver())
        return;
    // The end of the link ends the mode on the device.
    _inMode = false;
    _isSending = false;
    _lossTold = false;
    if (_received.hasRest())
        print(_received.takeRest());
    _quiet.cancel();
    _longestQuiet.cancel();
    if (_inputEnded)
        fail(ExitStatus::LinkFailed, lostSentence());
}

void LiveTextVerb::tryingAgain(std::chrono::seconds after)
{
    if (isOver())
        return;
    const QString when = after.count() == 1 ? u"1 second"_s : u"%1 seconds"_s.arg(after.count());
    if (!std::exchange(_lossTold, true))
        console().writeMessage(u"The connection was lost; trying again in %1."_s.arg(when));
    else
        console().writeNote(u"Still away; trying again in %1."_s.arg(when));
}

void LiveTextVerb::back()
{
    if (isOver())
        return;
    console().writeMessage(u"Connected again."_s);
    enterMode();
    sendNext();
}

QString LiveTextVerb::lostSentence() const
{
    QString sentence = u"The connection was lost."_s;
    if (!_lines.empty())
        sentence += u" Lines that were not sent or not confirmed: %1."_s.arg(_lines.size());
    return sentence;
}

void LiveTextVerb::CV_newDataReceived(const QString &text)
{
    if (isOver())
        return;
    if (_quiet.isActive())
        _quiet.start(QuietAfterInput, [this] { leave(); });
    const QByteArrayList lines = _received.feed(text.toUtf8());
    if (_received.takeOverflow())
        console().writeMessage(
            u"The device sends a line of more than %1 bytes; the rest is dropped."_s.arg(LongestLine));
    for (const QByteArray &line : lines) {
        if (!print(line)) {
            _status = ExitStatus::Failed;
            leave();
            return;
        }
    }
}

bool LiveTextVerb::print(const QByteArray &line)
{
    return console().writeOutput(visibleText(incoming(QString::fromUtf8(line), _languages.shown)).toUtf8() +
                                 '\n');
}

void LiveTextVerb::leave()
{
    if (!_inMode)
        return;
    _inMode = false;
    _quiet.cancel();
    _longestQuiet.cancel();
    console().stopInput();
    _isReading = false;
    _inputEnded = true;
    _session->device().sendCommand(_modeCommand);
    _session->whenWritten([this] {
        if (_received.hasRest() && !print(_received.takeRest()))
            _status = ExitStatus::Failed;
        finish(_status);
    });
}

void LiveTextVerb::interrupted()
{
    if (_session == nullptr)
        return;
    if (_session->isAway())
        console().writeMessage(lostSentence());
    if (std::exchange(_inMode, false) && _session->device().isConnectedAsCVComm())
        _session->device().sendCommand(_modeCommand);
    if (_received.hasRest())
        print(_received.takeRest());
}

} // namespace cvtamber
