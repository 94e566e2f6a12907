// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

#include <algorithm>
#include <limits>
#include <utility>

namespace cvtamber {

// Pieces of UTF-8 in, whole lines out. A line ends with LF or CR LF, which are not part of it. What a line has beyond
// `longest` bytes is dropped.
class LineSplitter
{
public:
    explicit LineSplitter(qsizetype longest = std::numeric_limits<qsizetype>::max())
        : _longest(longest)
    {}

    QByteArrayList feed(QByteArrayView piece)
    {
        QByteArrayList lines;
        for (auto end = piece.indexOf('\n'); end >= 0; end = piece.indexOf('\n')) {
            append(piece.first(end));
            lines.append(takeRest());
            piece = piece.sliced(end + 1);
        }
        append(piece);
        return lines;
    }

    bool hasRest() const { return !_rest.isEmpty(); }
    // What came after the last line end.
    QByteArray takeRest()
    {
        QByteArray line;
        line.swap(_rest);
        _isFull = false;
        if (line.endsWith('\r'))
            line.chop(1);
        return line;
    }

    // True when bytes were dropped since the last call, once a line.
    bool takeOverflow() { return std::exchange(_overflowed, false); }

private:
    void append(QByteArrayView bytes)
    {
        const qsizetype room = _longest - _rest.size();
        if (bytes.size() > room && !std::exchange(_isFull, true))
            _overflowed = true;
        _rest += bytes.first(std::min(room, bytes.size()));
    }

    const qsizetype _longest;
    QByteArray _rest;
    bool _isFull = false;
    bool _overflowed = false;
};

} // namespace cvtamber
