// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber {

// One line of a plain table of live text.
struct ChatText
{
    QString text;
    // 0 for a line typed on the phone.
    qint32 ID = 0;
};

} // namespace cvtamber
