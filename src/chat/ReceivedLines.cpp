// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/ReceivedLines.h"

#include <algorithm>

namespace cvtamber {

bool ReceivedLines::append(QStringView text)
{
    bool hadRoom = true;
    while (!text.isEmpty()) {
        if (_isDropping) {
            hadRoom = false;
            text = dropLine(text);
            continue;
        }
        const qsizetype room = std::clamp(Limit - _text.size(), qsizetype{0}, text.size());
        _text += text.first(room);
        text = text.sliced(room);
        _isDropping = !text.isEmpty();
        _previous = _text.isEmpty() ? QChar() : _text.back();
    }
    return hadRoom;
}

QStringView ReceivedLines::dropLine(QStringView text)
{
    qsizetype at = 0;
    while (_isDropping && at < text.size()) {
        const QChar character = text[at++];
        _isDropping = character != QLatin1Char('\n') || _previous != QLatin1Char('\r');
        _previous = character;
    }
    // Of a line that began when there was no room nothing is here to be ended.
    if (!_isDropping && !_text.isEmpty() && !_text.endsWith(LineEnd)) {
        if (_text.endsWith(QLatin1Char('\r')))
            _text.chop(1);
        _text += LineEnd;
    }
    return text.sliced(at);
}

std::optional<QString> ReceivedLines::takeLine()
{
    const qsizetype end = _text.indexOf(LineEnd, _searched);
    if (end < 0) {
        // A CR at the end may be half of one.
        _searched = std::max(qsizetype{0}, _text.size() - 1);
        return {};
    }
    QString line = _text.left(end);
    _text.remove(0, end + LineEnd.size());
    _searched = 0;
    return line;
}

} // namespace cvtamber
