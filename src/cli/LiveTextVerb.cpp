// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LiveTextVerb.h"

#include "base/VisibleText.h"
#include "cli/DeviceNames.h"
#include "cli/Utf8Text.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto QuietAfterInput = 2s;
constexpr auto LongestAfterInput = 10s;

} // namespace

LiveTextVerb::LiveTextVerb(const VerbContext &context, const VerbRequest &request, const QString &modeCommand)
    : Verb(context, request)
    , _modeCommand(modeCommand)
    , _quiet(context.runLoop)
    , _longestQuiet(context.runLoop)
{}

void LiveTextVerb::run(Session &session)
{
    _session = &session;
    CVBTDevice &device = session.device();
    device.setDataDelegate(std::static_pointer_cast<LiveTextVerb>(shared_from_this()));
    device.sendCommand(_modeCommand);
    _inMode = true;
    console().writeNote(u"Connected. Each line goes to the device. Ctrl-D ends."_s);
    console().startInput([this](const QByteArray &bytes, const QString &error) { takeInput(bytes, error); });
}

void LiveTextVerb::takeInput(const QByteArray &bytes, const QString &error)
{
    if (isOver())
        return;
    if (!error.isEmpty()) {
        console().writeMessage(error);
        _status = ExitStatus::Failed;
    }
    if (bytes.isEmpty()) {
        inputEnded();
        return;
    }
    const QByteArrayList lines = _input.feed(bytes);
    for (const QByteArray &line : lines)
        sendLine(line);
}

void LiveTextVerb::sendLine(const QByteArray &line)
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
    const QString text = readUtf8(line).text;
    if (text.contains(u'{')) {
        refuse(u"the device may take its opening brace for a command"_s);
        return;
    }
    qsizetype replaced = 0;
    _session->device().sendString(text + "\r\n"_L1, &replaced);
    if (replaced > 0)
        console().writeMessage(u"Line %1: characters that the device does not have became \"?\": %2."_s.arg(
            QString::number(_lineNumber), QString::number(replaced)));
}

void LiveTextVerb::inputEnded()
{
    if (_input.hasRest())
        sendLine(_input.takeRest());
    // What was sent last can be answered only once it has arrived.
    _session->whenWritten([this] {
        _quiet.start(QuietAfterInput, [this] { leave(); });
        _longestQuiet.start(LongestAfterInput, [this] { leave(); });
    });
}

void LiveTextVerb::CV_newDataReceived(const QString &text)
{
    if (isOver())
        return;
    if (_quiet.isActive())
        _quiet.start(QuietAfterInput, [this] { leave(); });
    const QByteArrayList lines = _received.feed(text.toUtf8());
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
    return console().writeOutput(visibleText(QString::fromUtf8(line)).toUtf8() + '\n');
}

void LiveTextVerb::leave()
{
    if (!_inMode)
        return;
    _inMode = false;
    _quiet.cancel();
    _longestQuiet.cancel();
    console().stopInput();
    _session->device().sendCommand(_modeCommand);
    _session->whenWritten([this] {
        if (_received.hasRest() && !print(_received.takeRest()))
            _status = ExitStatus::Failed;
        finish(_status);
    });
}

void LiveTextVerb::interrupted()
{
    if (std::exchange(_inMode, false) && _session->device().isConnectedAsCVComm())
        _session->device().sendCommand(_modeCommand);
    if (_received.hasRest())
        print(_received.takeRest());
}

} // namespace cvtamber
