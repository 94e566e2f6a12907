// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <deque>

namespace cvtamber {

// Bytes that wait to be written, first in, first out.
//
// Held in segments: a large block is taken over without a copy, so an upload is in memory once, and small
// ones are gathered so that many short texts do not become many segments. Cost is linear in the bytes that
// pass through.
class SendQueue
{
public:
    enum class Kind {
        Commands,
        Text, // of a document: what has not left of it may be dropped
    };

    // Takes the bytes from `offset` on.
    void append(QByteArray bytes, qsizetype offset = 0, Kind kind = Kind::Commands);
    // At most `count` bytes from the front.
    QByteArray take(qsizetype count);
    // The commands before and after the text stay.
    void dropText();
    void clear();

    qsizetype size() const { return _size; }
    bool isEmpty() const { return _size == 0; }

private:
    struct Segment
    {
        QByteArray bytes;
        Kind kind = Kind::Commands;
    };

    std::deque<Segment> _segments;
    qsizetype _frontOffset = 0; // bytes of the first segment that have left
    qsizetype _size = 0;
};

} // namespace cvtamber
