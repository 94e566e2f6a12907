// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleTable/BubbleText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace cvtamber {
namespace {

// As wide as the sign that takes their place, even where they are narrow.
constexpr qsizetype ReplacedBySign = 4;
// More than one character ever has, but for one that is made up to be large.
constexpr qsizetype LongestCharacter = 64;

bool isPair(QStringView text, qsizetype at)
{
    return at + 1 < text.size() && text[at].isHighSurrogate() && text[at + 1].isLowSurrogate();
}

} // namespace

QString drawableText(QStringView text, qsizetype most)
{
    if (most > 0 && most < text.size())
        text.truncate(isPair(text, most - 1) ? most - 1 : most);
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto unit = text[i];
        if (isPair(text, i)) {
            result += unit;
            result += text[++i];
        } else if (unit == QChar::CarriageReturn) {
            result += QChar::LineFeed;
            if (i + 1 < text.size() && text[i + 1] == QChar::LineFeed)
                ++i;
        } else if (unit == QChar::ParagraphSeparator || unit == QChar::LineSeparator) {
            result += QChar::LineFeed;
        } else if (unit.isSurrogate() || (unit.category() == QChar::Other_Control &&
                                          unit != QChar::LineFeed && unit != QChar::Tabulation)) {
            result += QChar::ReplacementCharacter;
        } else {
            result += unit;
        }
    }
    return result;
}

QString shortenedText(const QString &text, qsizetype shown)
{
    // Only the end is looked at: finding the characters of all of a long text takes its time.
    const auto from = std::max<qsizetype>(0, shown - LongestCharacter);
    const auto end = text.mid(from, shown - from);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, end);
    characters.toEnd();
    qsizetype kept = end.size();
    for (qsizetype dropped = 0; dropped < ReplacedBySign && kept > 0; ++dropped)
        kept = std::max<qsizetype>(0, characters.toPreviousBoundary());
    return text.left(from + kept) + QChar(u'\u2026');
}

} // namespace cvtamber
