// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/QtTextMeasurer.h"

#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace cvtamber {

MeasuredText QtTextMeasurer::measure(const QString &text, double fontSize, QSizeF bounds) const
{
    auto font = _font;
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(fontSize))));
    // A layout knows no other line end.
    auto lines = text;
    lines.replace(QChar::LineFeed, QChar::LineSeparator);
    QTextLayout layout(lines, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true);
    layout.setTextOption(option);
    layout.beginLayout();
    MeasuredText measured;
    double width = 0;
    double height = 0;
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(bounds.width());
        if (height + line.height() > bounds.height())
            break;
        width = std::max(width, line.naturalTextWidth());
        height += line.height();
        measured.shown = line.textStart() + line.textLength();
    }
    layout.endLayout();
    measured.size = QSizeF(std::min(std::ceil(width), bounds.width()), std::ceil(height));
    return measured;
}

} // namespace cvtamber
