// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/BraceScanner.h"

#include <QStringBuilder>

#include <utility>

namespace cvtamber {

void BraceScanner::feed(QByteArrayView bytes, const Visitor &visitor)
{
    for (const char byte : bytes)
        take(byte, visitor);
    flushText(visitor);
}

void BraceScanner::reset()
{
    _text.clear();
    _command.clear();
    _openBraces = 0;
    _oneBraceClosed = false;
}

void BraceScanner::take(char byte, const Visitor &visitor)
{
    if (_openBraces == 0) {
        if (byte == '{')
            _openBraces = 1;
        else
            _text += byte;
        return;
    }
    if (_oneBraceClosed) {
        finishCommand(visitor);
        if (byte != '}')
            take(byte, visitor);
        return;
    }
    takeInside(byte, visitor);
}

void BraceScanner::takeInside(char byte, const Visitor &visitor)
{
    if (byte == '{') {
        if (_command.isEmpty() && _openBraces == 1) {
            _openBraces = 2;
        } else if (_command.isEmpty()) {
            _text += '{'; // the last two of a row of braces may still open a command
        } else {
            giveUpCommand();
            _openBraces = 1;
        }
        return;
    }
    if (byte == '}') {
        if (_openBraces == 2)
            _oneBraceClosed = true;
        else
            finishCommand(visitor);
        return;
    }
    _command += byte;
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x20 || code == 0x7f || _command.size() > MaximalCommand)
        giveUpCommand();
}

void BraceScanner::flushText(const Visitor &visitor)
{
    if (_text.isEmpty())
        return;
    const QByteArray text = std::exchange(_text, {});
    visitor({Token::Kind::Text, text, text});
}

void BraceScanner::finishCommand(const Visitor &visitor)
{
    flushText(visitor);
    const QByteArray command = std::exchange(_command, {});
    const int braces = std::exchange(_openBraces, 0);
    _oneBraceClosed = false;
    visitor({Token::Kind::Command, command, QByteArray(braces, '{') + command + QByteArray(braces, '}')});
}

void BraceScanner::giveUpCommand()
{
    _text += QByteArray(_openBraces, '{') + _command;
    _command.clear();
    _openBraces = 0;
}

} // namespace cvtamber
