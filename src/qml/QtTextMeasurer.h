// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/TextMeasurer.h"

#include <QFont>

namespace cvtamber {

// Measures as a plain Text of Qt Quick draws.
class QtTextMeasurer final : public TextMeasurer
{
public:
    // The family and style; the size is given with each text.
    explicit QtTextMeasurer(const QFont &font)
        : _font(font)
    {}

    // Whole units: a label of that size breaks its lines in the same places.
    MeasuredText measure(const QString &text, double fontSize, QSizeF bounds) const override;

private:
    QFont _font;
};

} // namespace cvtamber
