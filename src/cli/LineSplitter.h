// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace cvtamber {

// Pieces of UTF-8 in, whole lines out. A line ends with LF or CR LF, which are not part of it.
class LineSplitter
{
public:
    QByteArrayList feed(const QByteArray &piece)
    {
        QByteArrayList lines;
        qsizetype from = 0;
        for (auto end = piece.indexOf('\n'); end >= 0; end = piece.indexOf('\n', from)) {
            _rest += piece.mid(from, end - from);
            lines.append(takeRest());
            from = end + 1;
        }
        _rest += piece.mid(from);
        return lines;
    }

    bool hasRest() const { return !_rest.isEmpty(); }
    // What came after the last line end.
    QByteArray takeRest()
    {
        QByteArray line;
        line.swap(_rest);
        if (line.endsWith('\r'))
            line.chop(1);
        return line;
    }

private:
    QByteArray _rest;
};

} // namespace cvtamber
