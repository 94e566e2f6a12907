// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/ChatText.h"
#include "ui/TableViewController.h"

#include <functional>
#include <memory>
#include <vector>

namespace cvtamber {

struct ChatLineColor
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const ChatLineColor &) const = default;
};

// One row: the label's background is that of the content.
struct ChatLineCell
{
    QString text;
    ChatLineColor background;
};

// The plain table of lines that stands behind the bubbles of the chat. The chat hides it, and gives it no list: rows are
// there only where somebody sets one. Main thread.
class ChatLineTable
{
public:
    using Lines = std::vector<ChatText>;
    // A new row, to be shown with the automatic animation and scrolled to.
    using RowInserted = std::function<void(int row)>;

    bool isHidden() const { return _isHidden; }
    void setHidden(bool hidden) { _isHidden = hidden; }
    const std::shared_ptr<Lines> &lines() const { return _lines; }
    void setLines(const std::shared_ptr<Lines> &lines) { _lines = lines; }
    void setRowInserted(const RowInserted &inserted) { _inserted = inserted; }

    int numberOfSections() const { return 1; }
    int numberOfRows(int) const { return _lines ? static_cast<int>(_lines->size()) : 0; }
    ChatLineCell cellForRow(IndexPath path) const;
    // Goes nowhere while there is no list.
    void append(const ChatText &line);

private:
    bool _isHidden = false;
    std::shared_ptr<Lines> _lines;
    RowInserted _inserted;
};

} // namespace cvtamber
