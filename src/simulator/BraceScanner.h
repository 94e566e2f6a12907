// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

namespace cvtamber {

// Splits the bytes of the link into commands and text, whatever pieces they come in.
//
// A command is printable text without braces inside "{...}" or "{{...}}", at most MaximalCommand bytes long.
// What begins like one and turns out not to be (another opening brace, a control byte, too long) is text, so
// no byte is lost and what is held back stays small. The visitor may not feed the scanner it is called by.
class BraceScanner
{
public:
    // Longer than any command with a file name; what is longer is text.
    static constexpr qsizetype MaximalCommand = 256;

    struct Token
    {
        enum class Kind { Text, Command };
        Kind kind;
        QByteArray bytes; // of a command without its braces
        QByteArray raw;   // as it came
    };
    using Visitor = std::function<void(const Token &)>;

    // Text comes in pieces as large as the input allows.
    void feed(QByteArrayView bytes, const Visitor &visitor);
    // Forgets a command that was begun.
    void reset();

private:
    void take(char byte, const Visitor &visitor);
    void takeInside(char byte, const Visitor &visitor);
    void flushText(const Visitor &visitor);
    void finishCommand(const Visitor &visitor);
    void giveUpCommand();

    QByteArray _text;    // not yet handed over; empty between two feeds
    QByteArray _command; // what follows the opening braces
    int _openBraces = 0; // 0: outside a command
    bool _oneBraceClosed = false;
};

} // namespace cvtamber
