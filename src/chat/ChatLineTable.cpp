// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/ChatLineTable.h"

namespace cvtamber {

namespace {

constexpr ChatLineColor fromPhone{0.9, 0.95, 0.9};
constexpr ChatLineColor fromElsewhere{0.9, 1.0, 0.9};

} // namespace

ChatLineCell ChatLineTable::cellForRow(IndexPath path) const
{
    const ChatText &line = _lines->at(static_cast<size_t>(path.row));
    return {line.text, line.ID == 0 ? fromPhone : fromElsewhere};
}

void ChatLineTable::append(const ChatText &line)
{
    if (!_lines)
        return;
    _lines->push_back(line);
    if (_inserted)
        _inserted(numberOfRows(0) - 1);
}

} // namespace cvtamber
