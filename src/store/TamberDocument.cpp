// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberDocument.h"

namespace cvtamber {

void TamberDocument::setText(const QString &text)
{
    if (_text == text) {
        // An editor that shows a text that cannot be read as empty, and sets that, has changed nothing.
        if (_text.isNull())
            _text = text;
        return;
    }
    _text = text;
    updateChangeCount(ChangeKind::Done);
}

} // namespace cvtamber
