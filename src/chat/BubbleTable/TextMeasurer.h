// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QSizeF>
#include <QString>

namespace cvtamber {

struct MeasuredText
{
    QSizeF size;
    // How many UTF-16 units of the text lie within the bounds; never a part of a character.
    qsizetype shown = 0;
};

// How large a text is when it is drawn.
// Thread: main thread. Owner: shared, the view hands one over.
class TextMeasurer : public InterfaceBase
{
public:
    // Of plain text in the system font, wrapped at words (within a word that is wider than the bounds). `fontSize` and
    // the result are in units of the screen. Lines that begin below the bounds are not looked at, so the time is
    // bounded for any text.
    virtual MeasuredText measure(const QString &text, double fontSize, QSizeF bounds) const = 0;
};

} // namespace cvtamber
