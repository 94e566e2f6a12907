// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/BubbleMetrics.h"

#include "qml/QtTextMeasurer.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>

#include <utility>

namespace cvtamber {

BubbleMetrics::BubbleMetrics(QObject *parent)
    : QObject(parent)
{
    if (qApp != nullptr)
        qApp->installEventFilter(this);
}

void BubbleMetrics::setTable(UIBubbleTableView *table)
{
    if (table == _table)
        return;
    _table = table;
    tellFont();
    tellAppearance();
    emit changed();
}

bool BubbleMetrics::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationFontChange)
        tellFont();
    return false;
}

void BubbleMetrics::setTextScale(double scale)
{
    _appearance.textScale = scale;
    tellAppearance();
    emit changed();
}

void BubbleMetrics::setTitleSize(int size)
{
    _appearance.titleSize = size;
    tellAppearance();
    emit changed();
}

void BubbleMetrics::setTablet(bool tablet)
{
    _appearance.isTablet = tablet;
    tellAppearance();
    emit changed();
}

void BubbleMetrics::setWidth(double width)
{
    _appearance.width = width;
    tellAppearance();
    emit changed();
}

QFont BubbleMetrics::textFont() const
{
    auto font = QGuiApplication::font();
    font.setPixelSize(BubbleFigures(_appearance).fontSize());
    return font;
}

void BubbleMetrics::copy(const QString &text) const
{
    QGuiApplication::clipboard()->setText(text);
}

void BubbleMetrics::componentComplete()
{
    _isComplete = true;
    tellFont();
    tellAppearance();
}

void BubbleMetrics::tellFont()
{
    if (_isComplete && _table)
        _table->setTextMeasurer(std::make_shared<QtTextMeasurer>(QGuiApplication::font()));
    emit textFontChanged();
}

void BubbleMetrics::tellAppearance()
{
    if (_isComplete && _table)
        _table->setAppearance(_appearance);
    emit textFontChanged();
}

} // namespace cvtamber
