// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace cvtamber {

// The row above a section of bubbles: the date of its first bubble, in the middle, in bold.
class UIBubbleHeaderTableViewCell
{
public:
    static constexpr auto ReuseIdentifier = "tblBubbleHeaderCell";

    // The date in the locale's medium style (its long one without the day of the week, the month shortened), the
    // time of day in its short one; in local time.
    static QString title(const QDateTime &date, const QLocale &locale);
    static QString timeOfDay(const QDateTime &date, const QLocale &locale);
};

} // namespace cvtamber
