// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/QtTextMeasurer.h"

#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace cvtamber {
namespace {

// Breaks the lines for a width, down to the bottom of the bounds.
MeasuredText linesOf(QTextLayout &layout, double width, const QSizeF &bounds)
{
    MeasuredText measured;
    double widest = 0;
    double height = 0;
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (height + line.height() > bounds.height())
            break;
        widest = std::max(widest, line.naturalTextWidth());
        height += line.height();
        measured.shown = line.textStart() + line.textLength();
    }
    layout.endLayout();
    measured.size = QSizeF(std::min(std::ceil(widest), bounds.width()), std::ceil(height));
    return measured;
}

} // namespace

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
    auto measured = linesOf(layout, bounds.width(), bounds);
    // Where lines run from right to left, they may break otherwise in the width that they take.
    if (linesOf(layout, measured.size.width(), bounds).size.height() != measured.size.height())
        measured.size.setWidth(bounds.width());
    return measured;
}

} // namespace cvtamber
