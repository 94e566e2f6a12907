// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleTable/UIBubbleHeaderTableViewCell.h"

#include <QRegularExpression>

namespace cvtamber {
namespace {

QString mediumDateFormat(const QLocale &locale)
{
    // The day of the week with what parts it from the rest, at either end.
    static const QRegularExpression weekday(
        QStringLiteral("^[\\s,،、]*dddd(?:'[^']*')?[\\s,،、.]*|[\\s,،、]*dddd(?:'[^']*')?\\s*$"));
    auto format = locale.dateFormat(QLocale::LongFormat);
    format.remove(weekday);
    return format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
}

} // namespace

QString UIBubbleHeaderTableViewCell::title(const QDateTime &date, const QLocale &locale)
{
    return locale.toString(date.toLocalTime().date(), mediumDateFormat(locale)) % QStringLiteral(", ") %
           timeOfDay(date, locale);
}

QString UIBubbleHeaderTableViewCell::timeOfDay(const QDateTime &date, const QLocale &locale)
{
    // That of no locale has seconds.
    static const QRegularExpression seconds(QStringLiteral("[:.]ss"));
    auto format = locale.timeFormat(QLocale::ShortFormat);
    return locale.toString(date.toLocalTime().time(), format.remove(seconds));
}

} // namespace cvtamber
