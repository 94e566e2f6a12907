// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/SendQueue.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

// Up to this size, blocks are gathered into the last segment instead of opening one of their own.
constexpr qsizetype gatherSize = 4096;

} // namespace

void SendQueue::append(QByteArray bytes, qsizetype offset, Kind kind)
{
    const qsizetype count = bytes.size() - offset;
    if (count <= 0)
        return;
    _size += count;
    if (!_segments.empty() && _segments.back().kind == kind &&
        _segments.back().bytes.size() + count <= gatherSize) {
        _segments.back().bytes.append(bytes.constData() + offset, count);
        return;
    }
    if (_segments.empty())
        _frontOffset = offset;
    else if (offset > 0)
        bytes.remove(0, offset);
    _segments.push_back({std::move(bytes), kind});
}

QByteArray SendQueue::take(qsizetype count)
{
    QByteArray piece;
    piece.reserve(std::min(count, _size));
    while (piece.size() < count && !_segments.empty()) {
        const QByteArray &front = _segments.front().bytes;
        const qsizetype part = std::min(count - piece.size(), front.size() - _frontOffset);
        piece.append(front.constData() + _frontOffset, part);
        _frontOffset += part;
        if (_frontOffset == front.size()) {
            _segments.pop_front();
            _frontOffset = 0;
        }
    }
    _size -= piece.size();
    return piece;
}

void SendQueue::dropText()
{
    if (!_segments.empty() && _segments.front().kind == Kind::Text)
        _frontOffset = 0;
    std::erase_if(_segments, [](const Segment &segment) { return segment.kind == Kind::Text; });
    _size = -_frontOffset;
    for (const Segment &segment : _segments)
        _size += segment.bytes.size();
}

void SendQueue::clear()
{
    _segments.clear();
    _frontOffset = 0;
    _size = 0;
}

} // namespace cvtamber
