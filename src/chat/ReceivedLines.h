// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace cvtamber {

// Text from the device on its way to lines, which end with CR LF.
//
// It holds at most Limit characters (and a line end). What comes while it is full is dropped up to the end of its line:
// the beginning of a line that was too long is kept and ended where the line ends, and no line has a hole in its middle.
class ReceivedLines
{
public:
    // Far more than a person writes before a line end, or ahead of who reads it.
    static constexpr qsizetype Limit = 65536;

    static constexpr QLatin1StringView LineEnd{"\r\n"};

    // Whether there was room for all of it.
    bool append(QStringView text);
    // The oldest complete line; nothing while there is none.
    std::optional<QString> takeLine();
    bool isEmpty() const { return _text.isEmpty(); }

private:
    // What is left of the text after the end of the line that is being dropped.
    QStringView dropLine(QStringView text);

    QString _text;
    // No line end before it.
    qsizetype _searched = 0;
    // The line that comes now is being dropped.
    bool _isDropping = false;
    QChar _previous;
};

} // namespace cvtamber
